#pragma once

#include <QPointer>
#include <QWidget>
#include <memory>
#include <string>
#include <vector>

#include "platform/appkit/NSMenu.h"
#include "platform/qt/menus/QtMadeMenu.h"
#include "platform/qt/menus/QtMenuItem.h"

class QMenu;
class QMenuBar;

namespace velmora {

class QtMenuBars;

/// A path and a title below it; nothing is in front of a title in the menu bar itself.
std::string joinedPath(const std::string& prefix, const std::string& title);

/// The mirror of a menu or a menu bar of the host: the items that a user sees there; or of what a
/// window without a bar offers. What is inserted into it by others is shown in the host's menu as
/// well; in a menu of a window's own commands it is an action of the window.
class QtMenu final : public NSMenu {
public:
    /// The mirror of a main menu, which is a bar or a window, or of a menu `depth` levels below
    /// one, whose path is `path`.
    QtMenu(QtMenuBars& owner, QWidget& widget, std::string path, int depth);
    ~QtMenu() override;

    /// The QMenu, QMenuBar or window; null once the host has destroyed it.
    QWidget* widget() const { return widget_; }
    /// Whether it is a main menu.
    bool isMainMenu() const override { return depth_ == 0; }
    /// Makes it the mirror of another menu of the same title.
    void rebind(QWidget& widget);
    void setPath(std::string path);

    bool isDirty() const { return dirty_; }
    void markDirty();
    /// Takes over what the host has changed since the last time.
    void bringUpToDate();

    /// Has the host prepare the menu as for its opening.
    void update() override;

    /// The host's action that the item stands for, or the one that shows an item of ours; null when
    /// it is gone.
    QAction* actionOf(const NSMenuItem& item) const;

    /// Whether a user could open the menu and choose from it.
    bool isReachable() const;

    /// Whether an item of ours with a submenu stands here.
    bool hasOwnSubmenu() const;
    /// Makes this menu the one by which the submenus of our items are reached.
    void adoptOwnSubmenus();

    /// The owner goes away before its mirrors do.
    void detach() { owner_ = nullptr; }

protected:
    void runItem(NSMenuItem& item) override;
    void itemWasInserted(int index) override;
    void itemWillBeRemoved(int index) override;
    void itemWasChanged(int index) override;

private:
    /// An item of ours and the action that shows it in the host's menu.
    struct Own {
        NSMenuItem* item;
        QPointer<QAction> action;
    };
    Own* ownOf(const NSMenuItem* item);
    void drop(Own& own);
    std::vector<QtMenuEntry> entries();
    std::vector<NSMenuItemRef> wantedItems();
    NSMenuItemRef itemFor(const QtMenuEntry& entry, std::vector<NSMenuItemRef>& spare);
    void arrange(const std::vector<NSMenuItemRef>& wanted);
    void takeOver(QtMenuItem& item, const QtMenuEntry& entry);
    /// Whether it mirrors that menu or lies below it: a host's menu may hold itself.
    bool isWithin(const QWidget& menu) const;
    void bringSubmenusUpToDate();
    void showOwnItem(NSMenuItem& item, int index);
    void watchOpening();

    QtMenuBars* owner_;
    QPointer<QWidget> widget_;
    /// Under which the owner knows the menu; compared only.
    const QObject* key_;
    std::string path_;
    int depth_;
    /// For the main menu of a window without a bar.
    std::unique_ptr<QtMadeMenu> made_;
    std::vector<Own> own_;
    bool dirty_ = false;
    bool preparing_ = false;
    bool bringingUpToDate_ = false;
    /// The item that the mirror itself puts in or takes out: the host's doing, not somebody's here.
    const NSMenuItem* moving_ = nullptr;
    QPointer<QWidget> watched_;
};

}  // namespace velmora
