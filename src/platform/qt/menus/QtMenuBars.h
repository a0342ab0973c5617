#pragma once

#include <QActionEvent>
#include <QMenuBar>
#include <QPointer>
#include <QTimer>
#include <memory>
#include <unordered_map>
#include <vector>

#include "platform/appkit/NSMenu.h"
#include "platform/qt/menus/QtCommandRunner.h"
#include "platform/qt/menus/QtMenuKeys.h"
#include "platform/qt/menus/QtOwnMenus.h"
#include "platform/qt/menus/QtShownKeys.h"

namespace velmora {

class QtMenu;
class QtContextMenus;
class QtWindows;

/// The host's menu bars as menus of the layer. One bar is the main menu: that of the window that is
/// key or was last and has one. As long as no window has one, the main menu is made of what a
/// window offers. Whose menus a main menu has, the bar or the window, is its root. What the host
/// changes is noticed by its events and taken over before anybody looks, or in the loop's next
/// pass.
class QtMenuBars {
public:
    QtMenuBars(QtWindows& windows, QtContextMenus& contextMenus);
    ~QtMenuBars();
    QtMenuBars(const QtMenuBars&) = delete;
    QtMenuBars& operator=(const QtMenuBars&) = delete;

    /// Up to date with the host's menus. Null without a window of the host.
    NSMenuRef mainMenu();

    /// Whether a window of the host is up that has a menu bar with menus.
    bool hasBar() { return currentBar() != nullptr; }
    /// Whether there is a main menu.
    bool hasMainMenu() { return currentRoot() != nullptr; }

    /// For every event that the GUI thread delivers, before its receiver has it.
    void noticeEvent(QObject* receiver, QEvent* event) {
        switch (event->type()) {
            case QEvent::ActionAdded:
            case QEvent::ActionChanged:
            case QEvent::ActionRemoved:
                noticeAction(receiver, static_cast<const QActionEvent&>(*event));
                break;
            case QEvent::Hide:
                if (shownKeys_.isShowing()) shownKeys_.takeOff(*receiver);
                break;
            case QEvent::Show:
            case QEvent::Close:
            case QEvent::WindowActivate: noticeWindow(receiver, event->type()); break;
            default: break;
        }
    }

    // For the mirrors of the menus

    /// A mirror of a menu or a bar registers under its widget and learns of the widget's changes.
    void add(QtMenu& menu, const QObject* widget);
    void remove(QtMenu& menu, const QObject* widget);
    void becameDirty(QtMenu& menu);

    /// The host may look at its actions to save their shortcuts: they are its own.
    void hostMaySave() { shownKeys_.takeOffAll(); }

    /// Another window may have become active just now: its menus get what the others have before
    /// anybody uses them.
    void checkNewMainMenu() {
        if (hadMain_ && lastMain_ != currentRoot()) check();
    }

    /// Looks after our additions each time that the menu has been prepared for opening.
    void checkWhenOpened(QMenu& menu);

    /// Emits the signal with which a host prepares a menu that opens, and soon the one for its
    /// closing. Does nothing for a menu that is open.
    void open(QMenu& menu);
    /// Closes what was opened so, before a command runs or when nothing has come of it.
    void closeOpened();

    /// The root of the main menu now, and any root's mirror up to date.
    QWidget* currentRoot();
    std::shared_ptr<QtMenu> mirrorOf(QWidget& root);

    QtOwnMenus& ownMenus() { return ownMenus_; }
    QtCommandRunner& runner() { return runner_; }
    QtMenuKeys& keys() { return keys_; }
    const Id& delegate() const { return delegate_; }

private:
    struct Root {
        QPointer<QWidget> widget;
        /// Null until somebody wants to see the menus.
        std::shared_ptr<QtMenu> mirror;
        /// How often our additions were asked for since the user last came to the window.
        int asked = 0;
    };
    void noticeAction(QObject* receiver, const QActionEvent& event);
    void noticeWindow(QObject* receiver, QEvent::Type type);
    void showKeys(QMenu& menu);
    void findBars();
    void learn(QWidget& root);
    QMenuBar* currentBar();
    QMenuBar* barOf(const QWidget& window);
    QWidget* windowWithoutBar();
    void lookAtWindow(QWidget& window);
    void bringUpToDate();
    void scheduleCheck();
    void check();
    void tellOfNewMainMenu();
    void askForAdditions();
    bool wantsAdditions(const Root& known);
    void giveUpMadeMenus();

    QtWindows& windows_;
    QtContextMenus& contextMenus_;
    QObject context_;
    QtOwnMenus ownMenus_;
    QtCommandRunner runner_;
    QtMenuKeys keys_;
    QtShownKeys shownKeys_;
    Id delegate_;
    bool foundBars_ = false;
    std::vector<Root> roots_;
    std::unordered_multimap<const QObject*, QtMenu*> mirrors_;
    std::vector<std::weak_ptr<NSObject>> dirty_;
    bool bringingUpToDate_ = false;
    bool checkScheduled_ = false;
    bool checking_ = false;
    bool hadMain_ = false;
    QPointer<QWidget> lastMain_;
    std::vector<QPointer<QMenu>> opened_;
    QTimer closer_;
    bool closing_ = false;
};

}  // namespace velmora
