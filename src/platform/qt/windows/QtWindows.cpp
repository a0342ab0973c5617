#include "platform/qt/windows/QtWindows.h"

#include <QApplication>
#include <QWidget>
#include <QWindow>
#include <algorithm>
#include <climits>

#include "platform/qt/base/QtGuard.h"
#include "platform/qt/windows/QtModality.h"
#include "platform/qt/windows/QtOwnWindow.h"
#include "platform/qt/windows/QtWindow.h"

namespace velmora {

namespace {

/// How long a window that is made key may take, in ms, and when it is asked for once more in the
/// way that also raises it.
constexpr int longestWait = 300;
constexpr int insistAfter = 100;

constexpr const char* ownMark = "_velmora_own";

bool takesPart(Qt::WindowType type) {
    return type != Qt::Popup && type != Qt::ToolTip && type != Qt::SplashScreen &&
           type != Qt::Desktop;
}

bool takesPart(const QWidget& widget) {
    return widget.isWindow() && widget.isVisible() && !widget.isMinimized() &&
           takesPart(widget.windowType()) && widget.windowHandle() &&
           (widget.windowFlags() & Qt::WindowTransparentForInput) == 0 &&
           !widget.testAttribute(Qt::WA_DontShowOnScreen);
}

/// Windows of widgets are known by their widgets.
bool takesPart(const QWindow& window) {
    return window.isVisible() && window.visibility() != QWindow::Minimized &&
           takesPart(window.type()) && (window.flags() & Qt::WindowTransparentForInput) == 0 &&
           !window.inherits("QWidgetWindow");
}

}  // namespace

QtWindows::QtWindows(QtViewMenus& menus) : menus_(menus) {
    limit_.setSingleShot(true);
    limit_.setInterval(longestWait);
    QObject::connect(&limit_, &QTimer::timeout, &context_, [this] { settle(); });
    insist_.setSingleShot(true);
    insist_.setInterval(insistAfter);
    QObject::connect(&insist_, &QTimer::timeout, &context_, [this] {
        if (awaited_) awaited_->requestActivate();
    });
    QObject::connect(qGuiApp, &QGuiApplication::focusWindowChanged, &context_, [this](QWindow* w) {
        if (w && awaited_ == w) settle();
    });
}

QtWindows::~QtWindows() {
    for (QtOwnWindow* window : std::exchange(own_, {})) window->close();
}

std::vector<NSWindowRef> QtWindows::orderedWindows() {
    struct Place {
        NSWindowRef window;
        std::ptrdiff_t depth;
    };
    const std::vector<std::uint32_t> stacking = x11_.stackingOrder();
    const auto depthOf = [&](const QWidget* widget, const QWindow& handle) -> std::ptrdiff_t {
        if (stacking.empty()) return widget ? activationRank(*widget) : INT_MAX;
        const auto id = static_cast<std::uint32_t>(handle.winId());
        const auto found = std::find(stacking.begin(), stacking.end(), id);
        // What the window manager does not manage lies above everything.
        return found != stacking.end() ? stacking.end() - found : 0;
    };
    std::vector<Place> places;
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (QWidget* widget : widgets) {
        if (!takesPart(*widget)) continue;
        if (NSWindowRef window = windowOf(*widget)) {
            places.push_back({std::move(window), depthOf(widget, *widget->windowHandle())});
        }
    }
    const QWindowList handles = QGuiApplication::topLevelWindows();
    for (QWindow* handle : handles) {
        if (takesPart(*handle)) places.push_back({windowFor(*handle), depthOf(nullptr, *handle)});
    }
    std::stable_sort(places.begin(), places.end(),
                     [](const Place& a, const Place& b) { return a.depth < b.depth; });
    std::vector<NSWindowRef> ordered;
    for (Place& place : places) ordered.push_back(std::move(place.window));
    return ordered;
}

QWindow* QtWindows::keyHandle() const {
    if (awaited_) return awaited_;
    if (const QWidget* widget = QApplication::activeWindow()) return widget->windowHandle();
    QWindow* handle = QGuiApplication::focusWindow();
    return handle && takesPart(*handle) ? handle : nullptr;
}

NSWindowRef QtWindows::keyWindow() {
    QWindow* handle = keyHandle();
    return handle ? windowOf(*handle) : nullptr;
}

NSWindowRef QtWindows::mainWindow() {
    for (const QPointer<QWidget>& widget : activated_) {
        if (widget && takesPart(*widget) && !isOwn(*widget)) return windowFor(*widget);
    }
    for (const NSWindowRef& window : orderedWindows()) {
        if (dynamic_cast<const QtWindow*>(window.get())) return window;
    }
    return nullptr;
}

NSWindowRef QtWindows::windowOf(QWidget& window) {
    for (QtOwnWindow* own : own_) {
        if (own->isShownBy(window)) return own->window();
    }
    return windowFor(window);
}

NSWindowRef QtWindows::windowOf(QWindow& handle) {
    QWidget* widget = widgetOf(handle);
    return widget ? windowOf(*widget->window()) : windowFor(handle);
}

std::shared_ptr<QtWindow> QtWindows::windowFor(QObject& host) {
    std::shared_ptr<QtWindow>& window = known_[&host];
    if (!window) {
        window = std::make_shared<QtWindow>(*this, host, takeNumber());
        QObject::connect(&host, &QObject::destroyed, &context_,
                         [this, key = &host] { known_.erase(key); });
    }
    return window;
}

int QtWindows::activationRank(const QWidget& window) const {
    if (awaited_ && awaited_ == window.windowHandle()) return 0;
    if (QApplication::activeWindow() == &window) return 1;
    const auto found = std::find(activated_.begin(), activated_.end(), &window);
    if (found == activated_.end()) return INT_MAX;
    return 2 + static_cast<int>(found - activated_.begin());
}

void QtWindows::noticeActivation(QWidget& window) {
    std::erase_if(activated_,
                  [&](const QPointer<QWidget>& known) { return !known || known == &window; });
    activated_.insert(activated_.begin(), &window);
}

void QtWindows::makeKey(QWindow& window) {
    if (!window.isVisible() || isBlockedByModal(window) || awaited_ == &window) return;
    if (QGuiApplication::focusWindow() == &window) {
        settle();
        return;
    }
    awaited_ = &window;
    limit_.start();
    if (x11_.focus(static_cast<std::uint32_t>(window.winId()))) {
        insist_.start();
    } else {
        window.requestActivate();
    }
}

void QtWindows::whenKeyIsSettled(std::function<void()> work) {
    if (!awaited_) {
        work();
    } else {
        waiting_.push_back(std::move(work));
    }
}

void QtWindows::settle() {
    awaited_.clear();
    limit_.stop();
    insist_.stop();
    // The host may still be in the middle of the change.
    for (std::function<void()>& work : std::exchange(waiting_, {})) {
        QMetaObject::invokeMethod(
            &context_, [work = std::move(work)] { guarded("A command", work); },
            Qt::QueuedConnection);
    }
}

QWidget* QtWindows::widgetOf(const QWindow& window) {
    if (window.handle()) return QWidget::find(window.winId());
    // One that was closed has no native window any more, and asking for its number would make one.
    const QWidgetList widgets = QApplication::topLevelWidgets();
    const auto found = std::find_if(widgets.begin(), widgets.end(), [&](const QWidget* widget) {
        return widget->windowHandle() == &window;
    });
    return found == widgets.end() ? nullptr : *found;
}

void QtWindows::markAsOwn(QWidget& window) {
    window.setProperty(ownMark, true);
}

bool QtWindows::isOwn(const QWidget& window) {
    return window.property(ownMark).toBool();
}

}  // namespace velmora
