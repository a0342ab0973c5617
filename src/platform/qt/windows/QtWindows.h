#pragma once

#include <QEvent>
#include <QPointer>
#include <QTimer>
#include <functional>
#include <memory>
#include <unordered_map>
#include <vector>

#include "platform/appkit/NSWindow.h"
#include "platform/qt/windows/X11Windows.h"

class QWidget;
class QWindow;

namespace velmora {

class QtOwnWindow;
class QtViewMenus;
class QtWindow;

/// The windows of the host, and panels of ours: which there are, in which order they lie, and which
/// takes the keys.
class QtWindows {
public:
    explicit QtWindows(QtViewMenus& menus);
    ~QtWindows();

    /// The visible windows, front to back, without menus, tips and what takes no input.
    std::vector<NSWindowRef> orderedWindows();

    /// The active window, or the one that has just been made to be; null when the host is not
    /// active.
    NSWindowRef keyWindow();
    QWindow* keyHandle() const;

    /// The host's window that was key last and can be seen, or its foremost; null without one.
    NSWindowRef mainWindow();

    /// For windows that are being made key: with a window manager that takes a while. The work is
    /// done when the window is active, or when it takes too long; at once when nothing is awaited.
    void whenKeyIsSettled(std::function<void()> work);

    /// 0 for the window that is key or is being made so, then 1 for the one that was before, and
    /// so on; windows that have never been active come last.
    int activationRank(const QWidget& window) const;

    /// The one object for a top-level widget or a window of the host without a widget.
    std::shared_ptr<QtWindow> windowFor(QObject& host);
    /// As windowFor, but a panel's window is the panel. Null for one that is going.
    NSWindowRef windowOf(QWindow& handle);
    NSWindowRef windowOf(QWidget& window);
    int takeNumber() { return ++lastNumber_; }

    /// Gives the window the keys and leaves it where it lies, where the display lets us. Nothing
    /// for one that cannot be seen or that a modal dialog blocks.
    void makeKey(QWindow& window);
    void noticeActivation(QWidget& window);

    /// The context menus of the views.
    QtViewMenus& menus() { return menus_; }

    /// The widget that the window is for, or null.
    static QWidget* widgetOf(const QWindow& window);

    /// Marks a top-level widget as one of our own panels, whose menu bar is none of the host's.
    static void markAsOwn(QWidget& window);
    static bool isOwn(const QWidget& window);

    /// The windows of ours, which are closed when the windows go.
    void addOwn(QtOwnWindow& window) { own_.push_back(&window); }
    void removeOwn(QtOwnWindow& window) { std::erase(own_, &window); }

    /// Whether windows can be translucent, as far as the X server says it.
    bool hasCompositor() { return x11_.hasCompositor(); }

private:
    void settle();

    X11Windows x11_;
    QtViewMenus& menus_;
    QObject context_;
    QTimer limit_;
    QTimer insist_;
    std::unordered_map<const QObject*, std::shared_ptr<QtWindow>> known_;
    std::vector<QPointer<QWidget>> activated_;
    /// The window that is being made key.
    QPointer<QWindow> awaited_;
    std::vector<std::function<void()>> waiting_;
    std::vector<QtOwnWindow*> own_;
    int lastNumber_ = 0;
};

}  // namespace velmora
