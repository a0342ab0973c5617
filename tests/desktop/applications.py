"""The real applications that the tests command, and what they can be seen to do.

All are as their packages bring them. Each class says which commands leave an effect that can be
seen from outside, and how it is read; those of BOTH also where in their windows strokes are drawn.
"""

import re
import time

import harness
from harness import wait_for
from xclient import LEFT, RIGHT, Geometry


class RealApplication(harness.Application):
    """An application with one document in a window at a place of its own."""

    process_name = None
    title = None
    # None for a window that stays where it comes.
    place = None
    first_menu = "File"

    # A menu command that changes the document each time it runs; count() tells how often.
    counted = None
    # One that switches something in the window on or off; switch() is what is seen of it.
    switched = None
    # One that opens a modal dialog, and that one's title. Escape closes it.
    dialog = None
    dialog_title = None
    # One that is disabled at first, and one that ends the application.
    disabled = None
    ending = None

    def __init__(self, screen, home, plugin=True, **options):
        command = self.prepare(home)
        self.document = command[-1]
        super().__init__(screen, home, command, plugin=plugin,
                         name=f"{self.process_name}-{home.path.name}", **options)
        self.main = self.window(self.title)
        if self.place:
            self.x.place(self.main, self.place)
        if screen.is_private:
            wait_for(lambda: self.place in (None, self.x.geometry(self.main)),
                     "the window at its place")
            wait_for(lambda: self.x.active_window() == self.main, "the window to be active")
        if plugin:
            self.wait_ready()
        self.wait_drawn()

    @classmethod
    def prepare(cls, home):
        """Writes the document and returns the command line, which ends with the document."""
        raise NotImplementedError

    def view(self):
        """Where strokes are drawn, and where a click of the right button opens a menu whose last
        item has a visible effect."""
        raise NotImplementedError

    def contexts(self):
        """Views with a context menu: (where, an item of it, a function that reads its effect)
        each. The first is view() and the last item of its menu."""
        raise NotImplementedError

    def quiet(self):
        """A part of the window that nothing changes by itself, as the text cursor does."""
        return self.view()

    def count(self):
        """Saves, and counts in the file."""
        self.save()
        return self.count_in(self.document.read_text())

    def count_in(self, text):
        raise NotImplementedError

    def wait_count(self, expected):
        wait_for(lambda: self.count() >= expected, f"{expected} runs of {self.counted}")
        assert self.count() == expected

    def save(self):
        """A star stands in the title while the file is not as the document is."""
        self.activate(self.main)
        # Where the command is not enabled yet, the key does nothing.
        self.press_until("ctrl+s", lambda: "*" not in self.x.title(self.main),
                         "the document to be saved")

    def press_until(self, keys, condition, what):
        """Presses the keys unless the condition holds, and again if that changes nothing."""
        pressed = 0

        def holds():
            nonlocal pressed
            if condition():
                return True
            if time.monotonic() > pressed + 0.5:
                pressed = time.monotonic()
                self.x.keys(keys)
            return False
        wait_for(holds, what)

    def switch(self):
        raise NotImplementedError

    def settled_switch(self):
        """The same, once nothing changes it any more by itself, as a window that settles does."""
        while True:
            value = self.switch()
            if harness.stays(lambda: self.switch() == value, 0.1):
                return value

    def assert_usable(self):
        """Uses the left button and the keys, and fails unless both do what they always do."""
        raise NotImplementedError

    def area(self, x, y, width, height):
        """A part of the main window, from its upper left corner."""
        main = self.x.geometry(self.main)
        return Geometry(main.x + x, main.y + y, width, height)

    def part(self, left, top, width, height):
        """The same by fractions of its size, for what grows with the window."""
        main = self.x.geometry(self.main)
        return Geometry(main.x + int(left * main.width), main.y + int(top * main.height),
                        int(width * main.width), int(height * main.height))

    def pixels(self, area):
        return self.x.picture(area)[2]

    def wait_drawn(self):
        """Waits until the view shows more than its background, and then nothing new."""
        area = self.x.geometry(self.main)
        seen = [None]

        def settled():
            before, seen[0] = seen[0], self.pixels(area)
            return before == seen[0] and len(set(seen[0][::997])) > 3
        wait_for(settled, "the window to be drawn")

    def click_menu_item_above(self, bottom, popup):
        """Clicks an item of an open menu that stands that many pixels above its lower edge."""
        menu = self.x.geometry(popup)
        self.x.click(menu.x + menu.width // 3, menu.y + menu.height - bottom, LEFT)

    def open_context_menu(self):
        self.x.click(*self.view().at(0.5, 0.4), RIGHT)
        return self.popup()

    def draw(self, letters, speed=800, leg=80, **options):
        return harness.draw(self.x, letters, self.view(), speed, leg, **options)

    def leave(self):
        """Makes a window of nobody's the active one. Qt says so after a while only."""
        mark = self.mark()
        self._elsewhere = self.x.create_window("elsewhere", (1100, 20, 100, 30))
        wait_for(lambda: self.x.active_window() == self._elsewhere, "the other window to be active")
        self.wait_text("^resigned active", mark)

    def come_back(self):
        mark = self.mark()
        self.x.click(*self.empty_place())
        wait_for(lambda: self.x.active_window() == self.main, "the application to be active")
        self.wait_text("^became active", mark)
        self.x.destroy_window(self._elsewhere)

    def empty_place(self):
        """Where the menu bar is empty and a click does nothing."""
        area = self.area(0, 0, 0, 0)
        return area.x + self.x.geometry(self.main).width - 20, area.y + 12

    def close_menus(self):
        """Escapes from every open menu, one after the other."""
        while True:
            count = len(self.popups())
            if not count:
                return
            self.x.keys("Escape")
            wait_for(lambda: len(self.popups()) < count, "a menu to close")

    def leave_menu_bar(self):
        """The bar keeps the keys after a menu of its was escaped from; one more gives them back."""
        self.close_menus()
        self.x.keys("Escape")

    def close_dialog(self):
        dialog = self.window(self.dialog_title)
        wait_for(lambda: self.x.active_window() == dialog, "the dialog to be active")
        self.x.keys("Escape")
        self.no_window(self.dialog_title)
        wait_for(lambda: self.x.active_window() == self.main, "the main window to be active again")


class Featherpad(RealApplication):
    """A text editor, on Qt 5."""

    process_name = "featherpad"
    title = r"words\.txt"
    place = Geometry(40, 60, 900, 720)
    counted = "Edit/Paste Date and Time"
    switched = "Options/Line Numbers"
    dialog = "Help/About"
    dialog_title = "About"
    disabled = "Edit/Redo"
    ending = "File/Quit"

    @classmethod
    def prepare(cls, home):
        document = home.path / "words.txt"
        document.write_text("one two\nthree\n")
        return ["featherpad", document]

    def view(self):
        return self.part(0.09, 0.26, 0.82, 0.49)

    def quiet(self):
        # Below the text, and above what slides in from below where root runs it.
        return self.area(80, 200, 740, 180)

    def count_in(self, text):
        return len(re.findall(r"\d\d:\d\d:\d\d", text))

    def switch(self):
        # The column of line numbers is dark, below the text too.
        return self.pixels(self.area(4, 400, 1, 1))

    def assert_usable(self):
        self.save()
        before = len(re.findall("q", self.document.read_text()))
        self.activate(self.main)
        self.x.click(*self.area(300, 400, 1, 1)[:2])
        self.x.keys("q")
        wait_for(lambda: "*" in self.x.title(self.main), "a typed letter in the text")
        self.save()
        assert len(re.findall("q", self.document.read_text())) == before + 1

    def contexts(self):
        return [(self.view(), "Paste Date and Time", self.count)]


class LongText(Featherpad):
    """With lines and columns to scroll to; no part of the text looks like another."""

    @classmethod
    def prepare(cls, home):
        command = super().prepare(home)
        command[-1].write_text("".join(
            f"{line} {' '.join(str(line * 7919 + word ** 3) for word in range(60))}\n"
            for line in range(500)))
        settings = home.path / ".config" / "featherpad" / "fp.conf"
        settings.parent.mkdir(parents=True, exist_ok=True)
        settings.write_text("[text]\nnoWrap=true\n")
        return command

    def text(self):
        # Right of the text cursor, which is in the first column; above what slides in from below.
        return self.area(100, 150, 640, 330)


class Linguist(RealApplication):
    """An editor for translations, on Qt 6. Its process has another name than its package."""

    process_name = "linguist"
    title = r"words\.ts"
    place = Geometry(40, 40, 1200, 940)
    counted = "Translation/Done and Next"
    switched = "View/Visualize whitespace"
    dialog = "Edit/Translation File Settings..."
    dialog_title = "Settings"
    disabled = "Edit/Redo"
    ending = "File/Exit"

    messages = 60

    @classmethod
    def prepare(cls, home):
        document = home.path / "words.ts"
        messages = "".join(
            f'<message><source>Word {number}</source>'
            f'<translation type="unfinished">Wort {number}</translation></message>\n'
            for number in range(cls.messages))
        document.write_text(
            '<?xml version="1.0" encoding="utf-8"?>\n<!DOCTYPE TS>\n'
            '<TS version="2.1" language="de_DE" sourcelanguage="en_US">\n'
            f'<context><name>Words</name>\n{messages}</context>\n</TS>\n')
        return ["/usr/lib/qt6/bin/linguist", document]

    def view(self):
        return self.part(0.45, 0.14, 0.5, 0.53)

    def count_in(self, text):
        return self.messages - text.count("unfinished")

    def switch(self):
        # A dot or none between the two words of the source text.
        return self.pixels(self.area(262, 722, 120, 26))

    def assert_usable(self):
        rows = self.area(300, 100, 160, 500)
        self.activate(self.main)
        before = self.pixels(rows)
        self.x.click(*self.area(340, 240, 1, 1)[:2])
        wait_for(lambda: self.pixels(rows) != before, "the clicked row to be selected")
        before = self.pixels(rows)
        self.x.keys("Down")
        wait_for(lambda: self.pixels(rows) != before, "the row below to be selected")
        self.x.click(*self.area(340, 130, 1, 1)[:2])

    def contexts(self):
        # The source view selects its text. The title of the dock at the lower right opens a menu
        # that is the window's; it switches tool bars on and off.
        return [(self.view(), "Select All", lambda: self.pixels(self.area(480, 85, 400, 30))),
                (self.area(800, 784, 200, 12), "Edit",
                 lambda: self.pixels(self.area(300, 30, 800, 40)))]


class Speedcrunch(RealApplication):
    """A calculator, on Qt 5. It has no document."""

    process_name = "speedcrunch"
    title = "SpeedCrunch"
    first_menu = "Session"
    switched = "View/Keypad"
    dialog = "Help/About SpeedCrunch"
    dialog_title = "About"
    ending = "Session/Quit"

    @classmethod
    def prepare(cls, home):
        return ["speedcrunch"]

    def switch(self):
        # The line for the expression moves up from the lower edge.
        return self.pixels(self.area(400, 455, 1, 1))

    def assert_usable(self):
        results = self.area(0, 30, 300, 300)
        before = self.pixels(results)
        self.activate(self.main)
        self.x.keys("2", "Return")
        wait_for(lambda: self.pixels(results) != before, "a result")

    def view(self):
        return self.part(0.1, 0.3, 0.8, 0.5)

    def contexts(self):
        # Selects the results, of which there must be one.
        return [(self.view(), "Select All", lambda: self.pixels(self.area(0, 30, 300, 300)))]


class Designer(RealApplication):
    """An editor for windows, on Qt 6. It fills the screen."""

    process_name = "designer"
    title = "Designer"
    switched = "View/Widget Box"
    dialog = "Help/About Qt Designer"
    dialog_title = "About"
    ending = "File/Quit"

    @classmethod
    def prepare(cls, home):
        document = home.path / "window.ui"
        document.write_text('<ui version="4.0"><class>Window</class>'
                            '<widget class="QWidget" name="Window"/></ui>\n')
        return ["/usr/lib/qt6/bin/designer", document]

    def switch(self):
        return self.pixels(self.area(100, 600, 100, 40))

    def assert_usable(self):
        # The word in an empty field: it stands to the right of where one letter does.
        word = self.area(785, 82, 16, 12)
        self.activate(self.main)
        self.x.click(*word.at(2, 0.5))
        # The field may have the keys only a while after the first click in it.
        self.press_until("q", lambda: len(set(self.pixels(word))) == 1, "a letter in the field")
        self.press_until("BackSpace", lambda: len(set(self.pixels(word))) > 1, "an empty field")

    def view(self):
        return self.part(0.02, 0.2, 0.15, 0.4)

    def contexts(self):
        # Shows the widgets in rows of icons.
        return [(self.view(), "Icon View", lambda: self.pixels(self.area(0, 140, 240, 400)))]


BOTH = (Featherpad, Linguist)
ALL = (Featherpad, Linguist, Speedcrunch, Designer)
