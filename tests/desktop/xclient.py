"""A connection to an X server: real pointer and key input, windows, and pictures of the screen.

Input goes through the server's test extension, so applications cannot tell it from a person's.
Coordinates are those of the X server: the origin is the upper left corner, y grows downward.
"""

import collections
import ctypes
import select
import struct
import time
import zlib

LEFT, MIDDLE, RIGHT = 1, 2, 3
# In a pointer's mask: the five buttons, and every modifier key but the number lock.
HELD_MASK = 0x1FEF

# The longest step of a stroke in seconds: a tester that was kept waiting goes on where it was, so
# that no corner of a stroke is jumped over.
LONGEST_STEP = 0.008

_SUBSTRUCTURE_NOTIFY = 1 << 19
_CREATE, _DESTROY, _UNMAP, _MAP, _REPARENT, _CONFIGURE = 16, 17, 18, 19, 21, 22



class Geometry(collections.namedtuple("Geometry", "x y width height")):
    """A rectangle of the screen, in pixels."""

    def contains(self, x, y):
        return self.x <= x < self.x + self.width and self.y <= y < self.y + self.height

    def intersects(self, other):
        return (self.x < other.x + other.width and other.x < self.x + self.width
                and self.y < other.y + other.height and other.y < self.y + self.height)

    def at(self, across, down):
        """The point at these fractions of width and height."""
        return int(self.x + self.width * across), int(self.y + self.height * down)


class _Attributes(ctypes.Structure):
    _fields_ = [(name, ctypes.c_int) for name in ("x", "y", "width", "height", "border", "depth")]
    _fields_ += [("visual", ctypes.c_void_p), ("root", ctypes.c_ulong)]
    _fields_ += [(name, ctypes.c_int) for name in (
        "kind", "bit_gravity", "window_gravity", "backing_store")]
    _fields_ += [("planes", ctypes.c_ulong), ("pixel", ctypes.c_ulong),
                 ("save_under", ctypes.c_int), ("colormap", ctypes.c_ulong),
                 ("map_installed", ctypes.c_int), ("map_state", ctypes.c_int),
                 ("all_masks", ctypes.c_long), ("your_mask", ctypes.c_long),
                 ("propagate", ctypes.c_long), ("override_redirect", ctypes.c_int),
                 ("screen", ctypes.c_void_p)]


class _Image(ctypes.Structure):
    _fields_ = [("width", ctypes.c_int), ("height", ctypes.c_int), ("xoffset", ctypes.c_int),
                ("format", ctypes.c_int), ("data", ctypes.c_void_p), ("byte_order", ctypes.c_int),
                ("unit", ctypes.c_int), ("bit_order", ctypes.c_int), ("pad", ctypes.c_int),
                ("depth", ctypes.c_int), ("bytes_per_line", ctypes.c_int),
                ("bits_per_pixel", ctypes.c_int), ("red", ctypes.c_ulong),
                ("green", ctypes.c_ulong), ("blue", ctypes.c_ulong), ("private", ctypes.c_void_p),
                ("create", ctypes.c_void_p), ("destroy", ctypes.c_void_p)]


class _CursorImage(ctypes.Structure):
    _fields_ = [(name, ctypes.c_short) for name in ("x", "y")]
    _fields_ += [(name, ctypes.c_ushort) for name in ("width", "height", "hot_x", "hot_y")]
    _fields_ += [("serial", ctypes.c_ulong), ("pixels", ctypes.POINTER(ctypes.c_ulong)),
                 ("atom", ctypes.c_ulong), ("name", ctypes.c_char_p)]


class _Event(ctypes.Union):
    """The few fields that this module reads; the windows stand at the same place in all of them."""

    class _Structure(ctypes.Structure):
        _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("sent", ctypes.c_int),
                    ("display", ctypes.c_void_p), ("parent", ctypes.c_ulong),
                    ("window", ctypes.c_ulong)]

    class _Numbers(ctypes.Structure):
        _fields_ = [("head", ctypes.c_byte * 48), ("numbers", ctypes.c_int * 6)]

    class _Map(ctypes.Structure):
        _fields_ = [("head", ctypes.c_byte * 48), ("override_redirect", ctypes.c_int)]

    class _ClientMessage(ctypes.Structure):
        _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("sent", ctypes.c_int),
                    ("display", ctypes.c_void_p), ("window", ctypes.c_ulong),
                    ("message", ctypes.c_ulong), ("format", ctypes.c_int),
                    ("data", ctypes.c_long * 5)]

    _fields_ = [("common", _Structure), ("numbers", _Numbers), ("map", _Map),
                ("client", _ClientMessage), ("pad", ctypes.c_long * 24)]


_xlib = ctypes.CDLL("libX11.so.6")
_xtest = ctypes.CDLL("libXtst.so.6")
_xfixes = ctypes.CDLL("libXfixes.so.3")

_P, _W, _I, _U, _L = (ctypes.c_void_p, ctypes.c_ulong, ctypes.c_int, ctypes.c_uint, ctypes.c_long)
for _function, _result, *_arguments in (
        ("XOpenDisplay", _P, ctypes.c_char_p), ("XCloseDisplay", _I, _P),
        ("XDefaultRootWindow", _W, _P), ("XSync", _I, _P, _I),
        ("XInternAtom", _W, _P, ctypes.c_char_p, _I), ("XFree", _I, _P),
        ("XKeysymToKeycode", ctypes.c_ubyte, _P, _W),
        ("XStringToKeysym", _W, ctypes.c_char_p),
        ("XChangePointerControl", _I, _P, _I, _I, _I, _I, _I),
        ("XSelectInput", _I, _P, _W, _L), ("XPending", _I, _P), ("XNextEvent", _I, _P, _P),
        ("XGetWindowAttributes", _I, _P, _W, _P), ("XGetImage", _P, _P, _W, _I, _I, _U, _U, _W, _I),
        ("XTranslateCoordinates", _I, _P, _W, _W, _I, _I, _P, _P, _P),
        ("XCreateSimpleWindow", _W, _P, _W, _I, _I, _U, _U, _U, _W, _W),
        ("XStoreName", _I, _P, _W, ctypes.c_char_p), ("XMapWindow", _I, _P, _W),
        ("XDestroyWindow", _I, _P, _W), ("XMoveResizeWindow", _I, _P, _W, _I, _I, _U, _U),
        ("XConnectionNumber", _I, _P), ("XGetInputFocus", _I, _P, _P, _P),
        ("XSendEvent", _I, _P, _W, _I, _L, _P),
        ("XQueryPointer", _I, _P, _W, _P, _P, _P, _P, _P, _P, _P),
        ("XQueryTree", _I, _P, _W, _P, _P, _P, _P), ("XSetErrorHandler", _P, _P),
        ("XkbLockGroup", _I, _P, _U, _U), ("XSetSelectionOwner", _I, _P, _W, _W, _W),
        ("XGetSelectionOwner", _W, _P, _W),
        ("XGetWindowProperty", _I, _P, _W, _W, _L, _L, _I, _W, _P, _P, _P, _P, _P)):
    getattr(_xlib, _function).restype = _result
    getattr(_xlib, _function).argtypes = _arguments
_xtest.XTestFakeMotionEvent.argtypes = [_P, _I, _I, _I, _W]
_xtest.XTestFakeRelativeMotionEvent.argtypes = [_P, _I, _I, _W]
_xtest.XTestFakeButtonEvent.argtypes = [_P, _U, _I, _W]
_xtest.XTestFakeKeyEvent.argtypes = [_P, _U, _I, _W]
_xfixes.XFixesGetCursorImage.restype = ctypes.POINTER(_CursorImage)
_xfixes.XFixesGetCursorImage.argtypes = [_P]

# Windows of others may go at any moment; a request about one that is gone has no result.
_ignore_errors = ctypes.CFUNCTYPE(_I, _P, _P)(lambda display, error: 0)
_xlib.XSetErrorHandler(ctypes.cast(_ignore_errors, _P))


Cursor = collections.namedtuple("Cursor", "width height hot_spot pixels")


class Display:
    def __init__(self, name):
        self._display = _xlib.XOpenDisplay(name.encode())
        if not self._display:
            raise RuntimeError(f"no X server answers at {name}")
        self.name = name
        self.root = _xlib.XDefaultRootWindow(self._display)
        self._held_buttons, self._held_keys = [], []
        self._atoms = {}

    def close(self):
        if self._display:
            self.release_everything()
            _xlib.XCloseDisplay(self._display)
            self._display = None

    # --- input ---------------------------------------------------------------------------------

    def switch_acceleration_off(self):
        """Relative motion moves the pointer by as much, however fast it comes."""
        _xlib.XChangePointerControl(self._display, 1, 1, 1, 1, 0)
        _xlib.XSync(self._display, 0)

    def move(self, x, y):
        _xtest.XTestFakeMotionEvent(self._display, -1, int(round(x)), int(round(y)), 0)
        _xlib.XSync(self._display, 0)

    def move_by(self, x, y):
        """Moves the mouse, as a hand does: what becomes of the pointer is up to the others."""
        _xtest.XTestFakeRelativeMotionEvent(self._display, x, y, 0)
        _xlib.XSync(self._display, 0)

    def press(self, button):
        self._held_buttons.append(button)
        _xtest.XTestFakeButtonEvent(self._display, button, 1, 0)
        _xlib.XSync(self._display, 0)

    def release(self, button):
        if button in self._held_buttons:
            self._held_buttons.remove(button)
        _xtest.XTestFakeButtonEvent(self._display, button, 0, 0)
        _xlib.XSync(self._display, 0)

    def click(self, x, y, button=LEFT):
        self.move(x, y)
        self.press(button)
        self.release(button)

    def travel(self, points, speed):
        """Moves through the points at this speed, in pixels a second. It starts at the first."""
        x, y = points[0]
        self.move(x, y)
        last = time.perf_counter()
        for target_x, target_y in points[1:]:
            while (x, y) != (target_x, target_y):
                time.sleep(0.004)
                now = time.perf_counter()
                way = speed * min(now - last, LONGEST_STEP)
                last = now
                left = ((target_x - x) ** 2 + (target_y - y) ** 2) ** 0.5
                if left <= way:
                    x, y = target_x, target_y
                else:
                    x, y = x + (target_x - x) * way / left, y + (target_y - y) * way / left
                self.move(x, y)

    def key_down(self, name):
        code = self._key_code(name)
        self._held_keys.append(code)
        _xtest.XTestFakeKeyEvent(self._display, code, 1, 0)
        _xlib.XSync(self._display, 0)

    def key_up(self, name):
        code = self._key_code(name)
        if code in self._held_keys:
            self._held_keys.remove(code)
        _xtest.XTestFakeKeyEvent(self._display, code, 0, 0)
        _xlib.XSync(self._display, 0)

    def keys(self, *chords):
        """Presses and releases chords such as "ctrl+s", "Return" or "a". A key may be named by its
        number on the keyboard, "#38", which is the same in every layout."""
        for chord in chords:
            names = chord.split("+")
            for name in names:
                self.key_down(name)
            for name in reversed(names):
                self.key_up(name)

    def lock_layout(self, number):
        """Switches to one of the keyboard's layouts, as its user would by a key."""
        _xlib.XkbLockGroup(self._display, 0x100, number)
        _xlib.XSync(self._display, 0)

    def _key_code(self, name):
        if name.startswith("#"):
            return int(name[1:])
        name = {"ctrl": "Control_L", "alt": "Alt_L", "shift": "Shift_L", "super": "Super_L"}.get(
            name, name)
        code = _xlib.XKeysymToKeycode(self._display,
                                      _xlib.XStringToKeysym(name.encode()))
        if not code:
            raise ValueError(f"no key is called {name}")
        return code

    def pointer(self):
        """(x, y, mask): the mask holds the buttons and modifier keys that are down."""
        x, y, other, mask = ctypes.c_int(), ctypes.c_int(), ctypes.c_int(), ctypes.c_uint()
        window, child = ctypes.c_ulong(), ctypes.c_ulong()
        _xlib.XQueryPointer(self._display, self.root, *map(ctypes.byref, (
            window, child, x, y, other, other, mask)))
        return x.value, y.value, mask.value

    def release_everything(self):
        for button in list(self._held_buttons):
            self.release(button)
        for code in list(self._held_keys):
            _xtest.XTestFakeKeyEvent(self._display, code, 0, 0)
        self._held_keys.clear()
        _xlib.XSync(self._display, 0)

    # --- windows -------------------------------------------------------------------------------

    def atom(self, name):
        if name not in self._atoms:
            self._atoms[name] = _xlib.XInternAtom(self._display, name.encode(), 0)
        return self._atoms[name]

    def property(self, window, name):
        """The property's value: bytes, or a list of numbers; None when it is not set."""
        kind, count, rest = ctypes.c_ulong(), ctypes.c_ulong(), ctypes.c_ulong()
        size, data = ctypes.c_int(), ctypes.c_void_p()
        _xlib.XGetWindowProperty(self._display, window, self.atom(name), 0, 1 << 16, 0, 0,
                                 *map(ctypes.byref, (kind, size, count, rest, data)))
        if not data.value:
            return None
        if size.value == 8:
            value = ctypes.string_at(data.value, count.value)
        else:
            value = [int(number) for number in ctypes.cast(
                data, ctypes.POINTER(ctypes.c_ulong))[:count.value]]
        _xlib.XFree(data)
        return value

    def managed_windows(self):
        """The windows that the window manager shows, from the lowest to the topmost."""
        return [window for window in self.property(self.root, "_NET_CLIENT_LIST_STACKING") or []
                if self.geometry(window)]

    def active_window(self):
        """The window that the window manager says is active, once keys really go to it; else 0."""
        value = self.property(self.root, "_NET_ACTIVE_WINDOW")
        focus, revert = ctypes.c_ulong(), ctypes.c_int()
        _xlib.XGetInputFocus(self._display, ctypes.byref(focus), ctypes.byref(revert))
        return focus.value if value and focus.value == value[0] else 0

    def title(self, window):
        value = self.property(window, "_NET_WM_NAME")
        if value is None:
            value = self.property(window, "WM_NAME")
        return value.decode("utf-8", "replace") if isinstance(value, bytes) else ""

    def pid(self, window):
        value = self.property(window, "_NET_WM_PID")
        return value[0] if value else None

    def geometry(self, window):
        """Where a mapped window's inside stands on the screen, or None."""
        attributes = _Attributes()
        if not _xlib.XGetWindowAttributes(self._display, window, ctypes.byref(attributes)):
            return None
        if attributes.map_state != 2:
            return None
        x, y, child = ctypes.c_int(), ctypes.c_int(), ctypes.c_ulong()
        if not _xlib.XTranslateCoordinates(self._display, window, self.root, 0, 0,
                                           *map(ctypes.byref, (x, y, child))):
            return None
        return Geometry(x.value, y.value, attributes.width, attributes.height)

    def popups(self):
        """The visible windows that no window manager touches: menus, tool tips, the trace."""
        root, parent = ctypes.c_ulong(), ctypes.c_ulong()
        children, count = ctypes.c_void_p(), ctypes.c_uint()
        _xlib.XQueryTree(self._display, self.root, *map(ctypes.byref, (
            root, parent, children, count)))
        if not children.value:
            return []
        windows = ctypes.cast(children, ctypes.POINTER(ctypes.c_ulong))[:count.value]
        _xlib.XFree(children)
        found = []
        for window in windows:
            attributes = _Attributes()
            if not _xlib.XGetWindowAttributes(self._display, window, ctypes.byref(attributes)):
                continue
            # Those of applications have a class; the window manager's own frames have none.
            if (attributes.override_redirect and attributes.map_state == 2
                    and attributes.kind == 1 and self.property(window, "WM_CLASS")):
                found.append(window)
        return found

    def kind(self, window):
        """What a window says that it is, such as "POPUP_MENU" or "TOOLTIP"."""
        value = self.property(window, "_NET_WM_WINDOW_TYPE") or []
        for name in ("POPUP_MENU", "DROPDOWN_MENU", "MENU", "TOOLTIP", "COMBO", "DIALOG", "UTILITY",
                     "SPLASH", "NORMAL"):
            if self.atom("_NET_WM_WINDOW_TYPE_" + name) in value:
                return name
        return ""

    def create_window(self, title, geometry):
        """A plain window of the tester's own, which the window manager treats like any other."""
        window = _xlib.XCreateSimpleWindow(self._display, self.root, *geometry, 0, 0, 0x6080A0)
        _xlib.XStoreName(self._display, window, title.encode())
        _xlib.XMapWindow(self._display, window)
        _xlib.XSync(self._display, 0)
        return window

    def close_window(self, window):
        """Asks the window manager to close a window as its close button does."""
        event = _Event()
        ctypes.memset(ctypes.byref(event), 0, ctypes.sizeof(event))
        message = event.client
        message.type, message.window, message.format = 33, window, 32
        message.message = self.atom("_NET_CLOSE_WINDOW")
        _xlib.XSendEvent(self._display, self.root, 0, (1 << 20) | _SUBSTRUCTURE_NOTIFY,
                         ctypes.byref(event))
        _xlib.XSync(self._display, 0)

    def place(self, window, geometry):
        """Asks the window manager to put a window's inside there."""
        _xlib.XMoveResizeWindow(self._display, window, *geometry)
        _xlib.XSync(self._display, 0)

    def destroy_window(self, window):
        _xlib.XDestroyWindow(self._display, window)
        _xlib.XSync(self._display, 0)

    def own_selection(self, name):
        """Takes a clipboard, such as "PRIMARY", for as long as nobody else does."""
        self._owner = getattr(self, "_owner", None) or _xlib.XCreateSimpleWindow(
            self._display, self.root, 0, 0, 1, 1, 0, 0, 0)
        _xlib.XSetSelectionOwner(self._display, self.atom(name), self._owner, 0)
        _xlib.XSync(self._display, 0)

    def owns_selection(self, name):
        return _xlib.XGetSelectionOwner(self._display, self.atom(name)) == self._owner

    def has_owner(self, name):
        return _xlib.XGetSelectionOwner(self._display, self.atom(name)) != 0

    # --- pictures ------------------------------------------------------------------------------

    def size(self):
        """The whole screen."""
        attributes = _Attributes()
        _xlib.XGetWindowAttributes(self._display, self.root, ctypes.byref(attributes))
        return Geometry(0, 0, attributes.width, attributes.height)

    def picture(self, area=None):
        """The screen, or an area of it, as (width, height, rows of RGB bytes)."""
        area = area or self.size()
        address = _xlib.XGetImage(self._display, self.root, *area, 0xFFFFFFFF, 2)
        if not address:
            raise ValueError(f"{area} is not wholly on the screen")
        image = ctypes.cast(address, ctypes.POINTER(_Image)).contents
        width, height, line = image.width, image.height, image.bytes_per_line
        data = ctypes.string_at(image.data, line * height)
        ctypes.CFUNCTYPE(_I, _P)(image.destroy)(address)
        rgb = bytearray(width * height * 3)
        for channel in range(3):
            rgb[channel::3] = data[2 - channel::4]
        return width, height, bytes(rgb)

    def cursor(self):
        """The pointer as it is shown. Its pixels are rows of (r, g, b, alpha), premultiplied."""
        image = _xfixes.XFixesGetCursorImage(self._display)
        shown = image.contents
        width, height = shown.width, shown.height
        pixels = [tuple(value >> shift & 0xFF for shift in (16, 8, 0, 24))
                  for value in shown.pixels[:width * height]]
        cursor = Cursor(width, height, (shown.hot_x, shown.hot_y),
                        [pixels[y * width:(y + 1) * width] for y in range(height)])
        _xlib.XFree(image)
        return cursor

    def screenshot(self, path):
        write_png(path, *self.picture())
        return path


def write_png(path, width, height, rgb):
    def chunk(kind, data):
        body = kind + data
        return struct.pack(">I", len(data)) + body + struct.pack(">I", zlib.crc32(body))

    lines = b"".join(b"\0" + rgb[row * width * 3:(row + 1) * width * 3] for row in range(height))
    with open(path, "wb") as stream:
        stream.write(b"\x89PNG\r\n\x1a\n"
                     + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0))
                     + chunk(b"IDAT", zlib.compress(lines, 1)) + chunk(b"IEND", b""))


class WindowWatch:
    """Remembers every window that comes onto the screen without the window manager, however short.

    It has a connection of its own; what it saw is complete whenever it is asked. A window that is
    mapped beyond the screen's edge is not seen.
    """

    def __init__(self, name):
        self._display = _xlib.XOpenDisplay(name.encode())
        self._root = _xlib.XDefaultRootWindow(self._display)
        self._places, self._redirects, self._mapped, self._seen = {}, {}, set(), []
        attributes = _Attributes()
        _xlib.XGetWindowAttributes(self._display, self._root, ctypes.byref(attributes))
        self._screen = Geometry(0, 0, attributes.width, attributes.height)
        _xlib.XSelectInput(self._display, self._root, _SUBSTRUCTURE_NOTIFY)
        _xlib.XSync(self._display, 0)

    def seen(self):
        """The windows seen since the watch began, as (window, where)."""
        _xlib.XSync(self._display, 0)
        event = _Event()
        while _xlib.XPending(self._display):
            _xlib.XNextEvent(self._display, ctypes.byref(event))
            self._note(event)
        return list(self._seen)

    def wait_for_window(self, limit):
        """Waits for the next window that is mapped and that a window manager would manage; returns
        it, or None after the limit in seconds."""
        event, deadline = _Event(), time.monotonic() + limit
        while True:
            while _xlib.XPending(self._display):
                _xlib.XNextEvent(self._display, ctypes.byref(event))
                if event.common.type == _MAP and not event.map.override_redirect:
                    return event.common.window
            left = deadline - time.monotonic()
            if left <= 0:
                return None
            select.select([_xlib.XConnectionNumber(self._display)], [], [], left)

    def _note(self, event):
        window, kind = event.common.window, event.common.type
        if kind in (_CREATE, _CONFIGURE):
            self._places[window] = Geometry(*event.numbers.numbers[:4])
        elif kind == _MAP:
            self._mapped.add(window)
            self._redirects[window] = bool(event.map.override_redirect)
        elif kind in (_UNMAP, _DESTROY, _REPARENT):
            self._mapped.discard(window)
        else:
            return
        if window in self._mapped and self._redirects.get(window):
            if window not in self._places:
                attributes = _Attributes()
                if not _xlib.XGetWindowAttributes(self._display, window, ctypes.byref(attributes)):
                    return
                self._places[window] = Geometry(attributes.x, attributes.y, attributes.width,
                                                attributes.height)
            if self._places[window].intersects(self._screen):
                if window not in [each for each, _ in self._seen]:
                    self._seen.append((window, self._places[window]))

    def close(self):
        if self._display:
            _xlib.XCloseDisplay(self._display)
            self._display = None
