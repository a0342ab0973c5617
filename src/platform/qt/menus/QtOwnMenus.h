#pragma once

#include <QAction>
#include <QMenu>
#include <QObject>
#include <QPointer>
#include <memory>
#include <unordered_map>
#include <vector>

#include "platform/appkit/NSMenu.h"
#include "platform/foundation/NSNotificationCenter.h"

namespace velmora {

class QtOwnMenus;

/// The QMenu that shows a menu of ours, wherever items of the host's menus open it. It follows the
/// menu's changes and asks its delegate when it opens.
class QtOwnMenu final : public NSObject {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    QtOwnMenu(QtOwnMenus& owner, const NSMenuRef& menu);
    ~QtOwnMenu() override;
    /// Follows the menu from here on.
    void start();

    bool isFor(const NSMenu& menu) const { return menu_.lock().get() == &menu; }
    bool isExpired() const { return menu_.expired(); }

    /// The action that opens the QMenu, which may stand in several menus of the host.
    QAction* opener();

private:
    struct Entry {
        NSMenuItemRef item;
        QPointer<QAction> action;
    };
    void menuChanged(const NSNotification& notification);
    void makeWidget();
    void willOpen();
    void bringUpToDate();

    QtOwnMenus& owner_;
    std::weak_ptr<NSMenu> menu_;
    QPointer<QMenu> widget_;
    QPointer<QAction> opener_;
    std::vector<Entry> entries_;
    bool dirty_ = true;
    QObject context_;
};

/// What of ours stands in the host's menus: an action for each item, one QMenu for each menu.
class QtOwnMenus {
public:
    /// The action that shows the item. `present` is the one that has shown it so far, if any, and
    /// stays the one where it still fits. An action without a submenu belongs to the caller, who
    /// releases it; one that opens a menu is shared.
    QAction* actionFor(NSMenuItem& item, QAction* present);

    /// Lets go of an action that shows its item no longer. Null, and shared ones, are left alone.
    static void release(QAction* action);

    static bool isOwn(const QAction& action);

    /// The item that an action of ours shows; null for other actions and those that open a menu.
    static NSMenuItemRef itemOf(const QAction& action);

    /// Whether an item with a submenu has ever been shown: additions that every bar is to have.
    bool hasSubmenus() const { return !menus_.empty(); }

private:
    QAction* openerOf(const NSMenuRef& menu);

    std::unordered_map<const NSMenu*, std::shared_ptr<QtOwnMenu>> menus_;
};

}  // namespace velmora
