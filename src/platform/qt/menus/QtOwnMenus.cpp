#include "platform/qt/menus/QtOwnMenus.h"

#include <algorithm>

#include "platform/appkit/drawing/NSImage.h"
#include "platform/qt/base/QtGuard.h"
#include "platform/qt/base/QtImages.h"
#include "platform/qt/base/QtTitles.h"
#include "platform/runtime/Class.h"

namespace velmora {

namespace {

/// An action of ours, known by its type. It has no object name and no parent of the host, and no
/// shortcut but while its menu is open: its key is looked for in the main menu.
class OwnAction final : public QAction {
public:
    OwnAction() : QAction(nullptr) { setMenuRole(QAction::NoRole); }

    /// The picture that the icon shows.
    std::weak_ptr<NSImage> shown;
    std::weak_ptr<NSObject> item;
};

/// Runs the item by its menu's message, which others may have taken over.
void runItem(const std::weak_ptr<NSObject>& chosen) {
    const auto item = std::static_pointer_cast<NSMenuItem>(chosen.lock());
    if (item) item->perform();
}

void show(const NSMenuItem& item, OwnAction& action) {
    action.setSeparator(item.isSeparatorItem());
    if (item.isSeparatorItem()) return;
    action.setText(textFromTitle(item.title()));
    action.setEnabled(item.isEnabled());
    if (action.shown.lock() != item.image()) {
        action.shown = item.image();
        action.setIcon(item.image() ? iconFromImage(*item.image()) : QIcon());
    }
}

OwnAction* makeAction(NSMenuItem& item) {
    auto* action = new OwnAction;
    action->item = item.weak_from_this();
    QObject::connect(action, &QAction::triggered, action,
                     [chosen = action->item] { guarded("A command", [&] { runItem(chosen); }); });
    return action;
}

}  // namespace

Class& QtOwnMenu::classObject() {
    static auto* object = &(new Class("QtOwnMenu", &NSObject::classObject()))
                               ->method<&QtOwnMenu::menuChanged>("menuChanged:");
    return *object;
}

QtOwnMenu::QtOwnMenu(QtOwnMenus& owner, const NSMenuRef& menu) : owner_(owner), menu_(menu) {}

QtOwnMenu::~QtOwnMenu() {
    for (const Entry& entry : entries_) QtOwnMenus::release(entry.action);
    delete opener_.data();
    if (widget_) widget_->deleteLater();
}

void QtOwnMenu::start() {
    NSNotificationCenter& center = NSNotificationCenter::defaultCenter();
    const NSMenuRef menu = menu_.lock();
    for (const std::string_view name :
         {NSMenuDidAddItemNotification, NSMenuDidRemoveItemNotification,
          NSMenuDidChangeItemNotification}) {
        center.addObserver_selector_name_object(shared_from_this(), Selector::named("menuChanged:"),
                                                name, menu.get());
    }
}

QAction* QtOwnMenu::opener() {
    makeWidget();
    // Not the action that a QMenu makes for itself: that must not be deleted, and a host may delete
    // whatever actions its menus hold.
    if (!opener_) opener_ = new OwnAction;
    if (opener_->menu() != widget_) opener_->setMenu(widget_);
    return opener_;
}

void QtOwnMenu::makeWidget() {
    if (widget_) return;
    // Without a parent, so that no window of the host takes it along; what the application leaves
    // at its end, Qt deletes.
    widget_ = new QMenu;
    QObject::connect(widget_, &QMenu::aboutToShow, &context_,
                     [this] { guarded("Opening a menu", [this] { willOpen(); }); });
    dirty_ = true;
    bringUpToDate();
}

void QtOwnMenu::menuChanged(const NSNotification& /*notification*/) {
    if (dirty_) return;
    dirty_ = true;
    QMetaObject::invokeMethod(
        &context_, [this] { guarded("Filling a menu", [this] { bringUpToDate(); }); },
        Qt::QueuedConnection);
}

void QtOwnMenu::willOpen() {
    const NSMenuRef menu = menu_.lock();
    if (!menu) return;
    static const Selector needsUpdate = Selector::named("menuNeedsUpdate:");
    const Id delegate = menu->delegate();
    if (delegate && delegate->respondsToSelector(needsUpdate)) {
        message<void(NSMenu&)>(*delegate, needsUpdate, *menu);
    }
    menu->update();
    bringUpToDate();
}

void QtOwnMenu::bringUpToDate() {
    const NSMenuRef menu = menu_.lock();
    if (!dirty_ || !widget_) return;
    dirty_ = false;
    std::vector<Entry> before = std::exchange(entries_, {});
    if (menu) {
        for (const NSMenuItemRef& item : menu->itemArray()) {
            const auto found = std::find_if(before.begin(), before.end(),
                                            [&](const Entry& entry) { return entry.item == item; });
            QAction* present = found != before.end() ? found->action.data() : nullptr;
            QAction* action = owner_.actionFor(*item, present);
            if (action == present) before.erase(found);
            entries_.push_back({item, action});
        }
    }
    for (const Entry& entry : before) {
        if (entry.action) widget_->removeAction(entry.action);
        QtOwnMenus::release(entry.action);
    }
    QList<QAction*> wanted;
    for (const Entry& entry : entries_) wanted << entry.action;
    if (widget_->actions() == wanted) return;
    const QList<QAction*> present = widget_->actions();
    for (QAction* action : present) widget_->removeAction(action);
    widget_->addActions(wanted);
}

QAction* QtOwnMenus::actionFor(NSMenuItem& item, QAction* present) {
    if (item.hasSubmenu()) {
        QAction* opener = openerOf(item.submenu());
        show(item, *static_cast<OwnAction*>(opener));
        return opener;
    }
    auto* action = present && !present->menu() ? static_cast<OwnAction*>(present) : nullptr;
    if (!action) action = makeAction(item);
    show(item, *action);
    return action;
}

void QtOwnMenus::release(QAction* action) {
    if (action && !action->menu()) action->deleteLater();
}

bool QtOwnMenus::isOwn(const QAction& action) {
    return dynamic_cast<const OwnAction*>(&action) != nullptr;
}

NSMenuItemRef QtOwnMenus::itemOf(const QAction& action) {
    const auto* own = dynamic_cast<const OwnAction*>(&action);
    return own ? std::static_pointer_cast<NSMenuItem>(own->item.lock()) : nullptr;
}

QAction* QtOwnMenus::openerOf(const NSMenuRef& menu) {
    std::erase_if(menus_, [](const auto& known) { return known.second->isExpired(); });
    std::shared_ptr<QtOwnMenu>& own = menus_[menu.get()];
    if (!own || !own->isFor(*menu)) {
        own = std::make_shared<QtOwnMenu>(*this, menu);
        own->start();
    }
    return own->opener();
}

}  // namespace velmora
