#pragma once

#include <QAction>
#include <QKeySequence>
#include <QMenu>
#include <QPointer>
#include <vector>

namespace velmora {

class NSMenuItem;

/// Shows the user's key equivalents in the host's menus. They are put on the actions of a menu when
/// it comes up and taken off again when it has gone, so that no host ever saves them, and no
/// shortcut of the toolkit is another one than the host's while somebody types.
class QtShownKeys {
public:
    /// The menu is coming up; its action is to show what the item has.
    void put(QMenu& menu, QAction& action, const NSMenuItem& item);

    /// Once all of a menu's keys were put: keeps the menu, which has grown, on its screen.
    static void keepOnScreen(QMenu& menu);

    /// The menu has gone; its actions are as before, unless the host has changed them meanwhile.
    void takeOff(const QObject& menu);
    void takeOffAll();

    bool isShowing() const { return !shown_.empty(); }

    /// The action that is being changed; null most of the time. That is no news of the host's.
    const QAction* changing() const { return changing_; }

private:
    /// What an action shows: its shortcuts and, where that names one too, its text.
    struct Look {
        QList<QKeySequence> shortcuts;
        QString text;
    };
    struct Shown {
        /// The menu, which may be going; compared only.
        const QObject* menu;
        QPointer<QAction> action;
        Look hosts;
        Look ours;
    };
    void restore(const std::vector<Shown>& gone);
    void change(QAction& action, const Look& from, const Look& to);

    std::vector<Shown> shown_;
    const QAction* changing_ = nullptr;
};

}  // namespace velmora
