#include <array>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "platform/appkit/NSScrollView.h"
#include "platform/foundation/NSRunLoop.h"
#include "platform/headless/HeadlessSession.h"
#include "platform/headless/windows/HeadlessScrollView.h"

namespace {

using namespace velmora;

void require(bool holds) {
    if (!holds) std::abort();
}

constexpr std::array<const char*, 4> buttons{"left", "right", "middle", "button3"};
constexpr std::array<std::uint32_t, 5> flags{NSShiftKeyMask, NSControlKeyMask, NSAlternateKeyMask,
                                             NSCommandKeyMask, NSFunctionKeyMask};

/// Each action by a button, and strokes and two ways of scrolling by keys alone.
constexpr const char* preferences =
    "{ isEnabled0=1; mouseButton0=1; isEnabled1=1; mouseButton1=-1; modifiers1=6;"
    "  isEnabled2=1; mouseButton2=2; isEnabled3=1; mouseButton3=-1; modifiers3=9;"
    "  isEnabled4=1; mouseButton4=2; modifiers4=1; isEnabled6=1; mouseButton6=2; modifiers6=4;"
    "  isEnabled8=1; mouseButton8=3; isEnabled9=1; mouseButton9=-1; modifiers9=17; }";
constexpr const char* gestures =
    "({ Trigger=r; Path=\"File/Save\"; }, { Trigger=r; Path=\"File/Close\"; },"
    " { Trigger=u; Path=\"File/Close\"; }, { Trigger=rd; Path=\"File/Save\"; })";

HostDescription editor() {
    ItemDescription file{.kind = ItemDescription::Kind::submenu, .title = "File"};
    for (const char* title : {"Save", "Close"}) file.items.push_back({.title = title});
    ViewDescription text{.frame = {{0, 0}, {600, 600}}};
    text.scroll = ScrollDescription{.name = "text", .document = {900, 3000}, .origin = {100, 1000}};
    return {.processName = "Editor",
            .menuBar = std::vector{file},
            .windows = {{.title = "Text", .frame = {{0, 0}, {600, 600}}, .views = {text}},
                        {.title = "Plain", .frame = {{600, 0}, {300, 600}}}}};
}

/// A user who does what the input says, and what came of it.
class Play {
public:
    Play(HeadlessSession& session, HeadlessProcess& process)
        : session_(session), process_(process) {
        write("VelmoraDefaults.plist", preferences);
        write("VelmoraGestures.plist", gestures);
        process_.launch();
        begin_ = session_.transcript().entries().size();
    }

    void run(const std::uint8_t* data, std::size_t size) {
        session_.user().move({300, 300}, Time::zero());
        for (std::size_t i = 0; i + 1 < size; i += 2) step(data[i], data[i + 1]);
        letEverythingGo();
        process_.run();
        check();
    }

private:
    void write(const std::string& name, const std::string& contents) {
        const std::string path = session_.settingsFile(name);
        session_.files().memory().createDirectories(path.substr(0, path.rfind('/')));
        session_.files().memory().writeAtomically(path, contents);
    }

    template <class Action>
    void then(Action action) {
        session_.input().then(std::move(action));
    }

    void step(std::uint8_t kind, std::uint8_t value) {
        switch (kind % 12) {
            case 0:
            case 1: press(value % buttons.size()); break;
            case 2:
            case 3: release(value % buttons.size()); break;
            case 4:
            case 5:
            case 6: move(value); break;
            case 7:
                then([this, value] { session_.user().hold(flags[value % flags.size()]); });
                break;
            case 8:
                then([this, value] { session_.user().letGo(flags[value % flags.size()]); });
                break;
            case 9: type(); break;
            case 10: session_.input().pause(std::chrono::milliseconds(value * 3)); break;
            case 11: happen(value); break;
        }
    }

    void press(std::size_t button) {
        then([this, button] {
            if (session_.user().press(static_cast<int>(button))) note(button, " down");
        });
    }
    void release(std::size_t button) {
        then([this, button] {
            if (session_.user().release(static_cast<int>(button))) note(button, " up");
        });
    }
    void note(std::size_t button, const char* what) {
        done_.push_back(std::string(buttons[button]) + what);
    }

    /// In one of eight directions, by up to 124 pixels.
    void move(std::uint8_t value) {
        const auto way = static_cast<float>((value >> 3U) * 4);
        const auto along = [way](unsigned part) {
            return part % 4 == 0 ? 0 : part < 4 ? way : -way;
        };
        const NSPoint by{along(value % 8U), along((value + 2U) % 8U)};
        const Time duration = std::chrono::milliseconds(value % 3 * 20);
        then([this, by, duration] {
            const NSPoint from = session_.user().hand();
            session_.user().move({from.x + by.x, from.y + by.y}, duration);
        });
        session_.input().pause(duration);
    }

    void type() {
        then([this] {
            const std::string character(1, static_cast<char>('a' + keys_++ % 26));
            session_.user().keyDown({.characters = character});
            session_.user().keyUp({.characters = character});
            done_.push_back("key down " + character);
            done_.push_back("key up " + character);
        });
    }

    void happen(std::uint8_t value) {
        switch (value % 5) {
            case 0: then([this] { session_.resignActive(); }); break;
            case 1: then([this] { session_.activate(process_); }); break;
            case 2: then([this] { session_.user().scroll(0, 1); }); break;
            case 3:
            case 4:
                then([this, title = value % 5 == 3 ? "Text" : "Plain"] {
                    if (const auto window = process_.desktop().windowTitled(title)) {
                        process_.desktop().focusWindow(window);
                    }
                });
                break;
        }
    }

    /// A key in the end also stops what keys alone have begun.
    void letEverythingGo() {
        for (std::size_t button = 0; button < buttons.size(); ++button) release(button);
        for (const std::uint32_t flag : flags) then([this, flag] { session_.user().letGo(flag); });
        type();
        session_.input().pause(std::chrono::seconds(1));
        then([this] {
            require(!process_.desktop().showsCursor());
            require(!process_.desktop().drawnWindow());
            require(session_.user().location() == session_.user().hand());
            require(!NSRunLoop::currentRunLoop().nextFireDate(NSDefaultRunLoopMode));
        });
    }

    void check() const {
        std::vector<std::string> reached;
        int strokes = 0;
        int commands = 0;
        const auto& entries = session_.transcript().entries();
        for (std::size_t i = begin_; i < entries.size(); ++i) {
            const std::string& text = entries[i].text;
            if (entries[i].kind == Transcript::Kind::trace && text.starts_with("gesture \"")) {
                checkGesture(text.substr(9, text.size() - 10));
                strokes = 1;
            }
            if (entries[i].kind == Transcript::Kind::command) {
                ++commands;
                require(--strokes == 0);
            }
            if (entries[i].kind == Transcript::Kind::event && !text.starts_with("scroll")) {
                reached.insert(reached.end(), static_cast<std::size_t>(entries[i].times), text);
            }
        }
        checkReached(reached);
        const NSPoint origin =
            process_.desktop().scrollViewNamed("text")->documentVisibleRect().origin;
        require(origin.x >= 0 && origin.x <= 300 && origin.y >= 0 && origin.y <= 2400);
    }

    static void checkGesture(const std::string& gesture) {
        require(!gesture.empty() && gesture.size() <= 29);
        for (std::size_t i = 0; i < gesture.size(); ++i) {
            require(std::string("udlr").find(gesture[i]) != std::string::npos);
            require(i == 0 || gesture[i] != gesture[i - 1]);
        }
    }

    /// All that was done, in its order and once, but for the presses that became something else.
    void checkReached(const std::vector<std::string>& reached) const {
        auto next = reached.begin();
        for (const std::string& text : done_) {
            if (next != reached.end() && *next == text) {
                ++next;
            } else {
                require(text.ends_with(" down"));
            }
        }
        require(next == reached.end());
    }

    HeadlessSession& session_;
    HeadlessProcess& process_;
    std::size_t begin_ = 0;
    std::vector<std::string> done_;
    int keys_ = 0;
};

}  // namespace

/// Two bytes a step of a user who presses, moves, types and switches windows and applications while
/// strokes are captured and motion scrolls. What reaches the host and what stays behind is right.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 200) return 0;
    HeadlessSession session("");
    HeadlessProcess& process = session.addProcess(editor());
    const HeadlessProcess::Scope scope(process);
    Play(session, process).run(data, size);
    return 0;
}
