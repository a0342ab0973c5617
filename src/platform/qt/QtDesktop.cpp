#include "platform/qt/QtDesktop.h"

#include <QApplication>
#include <QDesktopServices>
#include <QUrl>
#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "platform/appkit/NSApplication.h"
#include "platform/foundation/NSRunLoop.h"
#include "platform/foundation/scripts/PosixFetch.h"
#include "platform/foundation/scripts/PosixTask.h"
#include "platform/qt/base/HostProcess.h"
#include "platform/qt/base/QtCoordinates.h"
#include "platform/qt/base/QtGuard.h"
#include "platform/qt/base/QtImages.h"
#include "platform/qt/panels/QtPanel.h"
#include "platform/qt/trace/QtDrawnWindow.h"
#include "platform/runtime/Class.h"

namespace velmora {

namespace {

constexpr Time farAway = std::chrono::hours(1);

/// How long after its window a host may show its menu bar and have it taken for the first main
/// menu, in ms. One that comes later replaces what was made meanwhile.
constexpr int patienceForBar = 200;

/// When a wait has to run the timers, it is asked again after so long.
constexpr std::chrono::milliseconds timerRetry(10);

/// A panel that cannot be shown any more.
class NoPanel final : public PanelPeer {
public:
    NSRect frame() override { return {}; }
    void setFrameOrigin(NSPoint /*origin*/) override {}
    void center() override {}
    void makeKeyAndOrderFront() override {}
    void makeKeyWindow() override {}
    void orderOut() override {}
    bool isVisible() override { return false; }
    int windowNumber() override { return 0; }
    void contentChanged() override {}
    void runModal() override {}
    void endModal() override {}
};

/// A drawn window that cannot be shown any more.
class NoDrawnWindow final : public DrawnWindowPeer {
public:
    void setFrame(NSRect /*frame*/) override {}
    void setAlphaValue(float /*alpha*/) override {}
    void orderFront() override {}
    void orderOut() override {}
    void show(DisplayList /*list*/) override {}
};

bool isSet(const char* variable) {
    const char* value = std::getenv(variable);
    return value && *value && std::strcmp(value, "0") != 0;
}

}  // namespace

QtDesktop::Session::Session()
    : windows(contextMenus),
      menuBars(windows, contextMenus),
      typing(windows),
      hook(menuBars, windows) {
    hook.watchForHostLoops([this] {
        cursor.show(nullptr);
        return pointer.lose();
    });
    launch.setSingleShot(true);
    patience.setSingleShot(true);
    patience.setInterval(patienceForBar);
    timers.setSingleShot(true);
    timers.setTimerType(Qt::PreciseTimer);
}

QtDesktop::QtDesktop()
    : processName_(hostProcessName()), log_(processName_), traces_(isSet("VELMORA_TRACE")) {
    setDesktop(this);
    session_ = std::make_unique<Session>();
    QObject& context = session_->context;
    QObject::connect(&session_->timers, &QTimer::timeout, &context, [this] { fireTimers(); });
    QObject::connect(&session_->launch, &QTimer::timeout, &context, [this] { tryToLaunch(); });
    QObject::connect(&session_->patience, &QTimer::timeout, &context, [this] { launch(); });
    LoadHook::runAll();
    session_->hook.watchForMenuBar([this] { session_->launch.start(0); });
    session_->launch.start(0);
}

void QtDesktop::hostWillQuit() {
    if (session_) session_->menuBars.hostMaySave();
}

void QtDesktop::close() {
    session_.reset();
}

void QtDesktop::leave() {
    if (!session_) return;
    session_->hook.retire();
    static_cast<void>(session_.release());
}

void QtDesktop::tryToLaunch() {
    guarded("The launch", [this] {
        if (!session_) return;
        if (session_->menuBars.hasBar()) {
            launch();
        } else if (!session_->patience.isActive() && session_->menuBars.hasMainMenu()) {
            session_->patience.start();
        }
    });
}

void QtDesktop::launch() {
    guarded("The launch", [this] {
        if (!session_ || !session_->menuBars.hasMainMenu()) return;
        session_->launch.disconnect();
        session_->patience.disconnect();
        session_->hook.takeInput();
        NSApp().finishLaunching();
        trace("launched");
        QObject::connect(qApp, &QGuiApplication::applicationStateChanged, &session_->context,
                         [this] { applicationStateChanged(); });
        applicationStateChanged();
    });
}

void QtDesktop::applicationStateChanged() {
    if (!session_) return;
    const bool active = QGuiApplication::applicationState() == Qt::ApplicationActive;
    if (active == session_->active) return;
    session_->active = active;
    trace(active ? "became active" : "resigned active");
    guarded("A change of the application's state", [active] {
        if (active) {
            NSApp().didBecomeActive();
        } else {
            NSApp().willResignActive();
        }
    });
}

// Time and waiting

Time QtDesktop::now() const {
    return steadyNow();
}

void QtDesktop::wait(Time deadline) {
    if (!session_) return;
    session_->hook.wait(deadline);
    // Also before what ends the tracking: it may have come together with the last motion.
    if (session_ && session_->pointer.hasMoved()) {
        NSEvent::Fields motion;
        motion.type = NSMouseMoved;
        NSApp().postEventFirst(std::make_shared<NSEvent>(std::move(motion)));
    }
}

void QtDesktop::timersChanged(std::optional<Time> earliest) {
    if (!session_) return;
    if (!earliest) {
        session_->timers.stop();
        return;
    }
    const Time left = std::clamp(*earliest - std::min(*earliest, now()), Time(0), farAway);
    session_->timers.start(std::chrono::ceil<std::chrono::milliseconds>(left));
}

void QtDesktop::fireTimers() {
    if (!session_) return;
    // A fetch that waits runs the timers of its own mode.
    if (session_->hook.endWait()) {
        session_->timers.start(timerRetry);
        return;
    }
    guarded("A timer", [] { NSApp().fireTimers(); });
    const NSRunLoop& loop = NSRunLoop::currentRunLoop();
    timersChanged(loop.nextFireDate(loop.mode()));
}

// The host

void QtDesktop::dispatchEvent(const NSEventRef& event) {
    if (!session_) return;
    if (const auto* input = dynamic_cast<const QtEvent*>(event.get())) {
        session_->hook.dispatch(*input);
    } else if (event->type() == NSKeyDown) {
        session_->typing.type(event);
    } else if (event->type() == NSScrollWheel) {
        session_->wheel.scroll(*event, session_->hook.pointerLocation().toPoint());
    }
}

void QtDesktop::runCommand(const std::function<void()>& command) {
    if (!session_ || !session_->hook.isDelivering()) {
        command();
        return;
    }
    // The toolkit goes on with the event's window afterwards, which may be gone after a loop.
    const auto run = [event = NSApp().currentEvent(), command] {
        NSApp().setCurrentEvent(event);
        command();
    };
    QMetaObject::invokeMethod(
        &session_->context, [run] { guarded("A command", run); }, Qt::QueuedConnection);
}

std::shared_ptr<NSMenu> QtDesktop::mainMenu() {
    return session_ ? session_->menuBars.mainMenu() : nullptr;
}

std::vector<std::shared_ptr<NSWindow>> QtDesktop::orderedWindows() {
    return session_ ? session_->windows.orderedWindows() : std::vector<NSWindowRef>();
}

std::shared_ptr<NSWindow> QtDesktop::keyWindow() {
    return session_ ? session_->windows.keyWindow() : nullptr;
}

std::shared_ptr<NSWindow> QtDesktop::mainWindow() {
    return session_ ? session_->windows.mainWindow() : nullptr;
}

std::unique_ptr<PanelPeer> QtDesktop::makePanel(NSPanel& panel) {
    if (!session_) return std::make_unique<NoPanel>();
    return std::make_unique<QtPanel>(session_->windows, panel);
}

std::unique_ptr<DrawnWindowPeer> QtDesktop::makeDrawnWindow(NSDrawnWindow& window) {
    if (!session_) return std::make_unique<NoDrawnWindow>();
    return std::make_unique<QtDrawnWindow>(session_->windows, window.level() > 0);
}

// The pointer

NSPoint QtDesktop::mouseLocation() {
    return session_ ? screenPoint(session_->hook.pointerLocation()) : NSPoint();
}

CGMouseDelta QtDesktop::lastMouseDelta() {
    return session_ ? session_->pointer.takeDelta() : CGMouseDelta();
}

void QtDesktop::associateMouseAndPointer(bool connected) {
    if (!session_) return;
    if (connected) {
        session_->pointer.release();
    } else {
        session_->pointer.pin(session_->hook.pressLocation());
    }
}

void QtDesktop::showCursor(const NSCursor* cursor) {
    if (session_) session_->cursor.show(cursor);
}

// Pictures

std::optional<Bitmap> QtDesktop::decodeImage(std::string_view bytes) {
    return velmora::decodeImage(bytes);
}

// The world around

void QtDesktop::openURL(const std::string& address) {
    trace("opens " + address);
    if (session_) QDesktopServices::openUrl(QUrl(QString::fromStdString(address)));
}

void QtDesktop::beep() {
    trace("beep");
    if (session_) QApplication::beep();
}

std::optional<std::string> QtDesktop::fetch(const std::string& address, std::size_t mostBytes) {
    return fetchThroughCurl(address, mostBytes);
}

std::unique_ptr<NSTask> QtDesktop::launchProcess(const std::string& path,
                                                 const std::vector<std::string>& arguments) {
    return PosixTask::launch(path, arguments);
}

void QtDesktop::log(const std::string& line) {
    log_.write(line);
}

void QtDesktop::trace(const std::string& line) {
    if (traces_) log_.write(line);
}

std::string QtDesktop::homeDirectory() {
    return userHomeDirectory();
}

std::optional<std::string> QtDesktop::environment(const std::string& name) {
    const char* value = std::getenv(name.c_str());
    if (!value) return std::nullopt;
    return value;
}

std::string QtDesktop::resourceDirectory() {
    return findResourceDirectory();
}

std::vector<std::string> QtDesktop::preferredLanguages() {
    return userLanguages();
}

}  // namespace velmora
