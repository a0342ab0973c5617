#include "panels/VelmoraGesturesUI.h"

#include "definitions/VelmoraUtils.h"
#include "gestures/VelmoraGestureCell.h"
#include "gestures/VelmoraGestures.h"
#include "panels/VelmoraMenuItem.h"
#include "platform/appkit/NSApplication.h"
#include "platform/appkit/panels/NSNibLoading.h"
#include "platform/foundation/NSBundle.h"
#include "platform/foundation/NSNotificationCenter.h"
#include "platform/runtime/Outlet.h"
#include "product/Limits.h"

namespace velmora {

namespace {

void setTraining(bool training) {
    if (const auto gestures = VelmoraGestures::activeInstance()) gestures->setTraining(training);
}

std::shared_ptr<VelmoraGestureCell> makeCell(bool isBig) {
    auto cell = std::make_shared<VelmoraGestureCell>();
    cell->initBig(isBig);
    return cell;
}

}  // namespace

Class& VelmoraGesturesUI::classObject() {
    using Self = VelmoraGesturesUI;
    static auto* object =
        &(new Class("VelmoraGesturesUI", &VelmoraCommonUI::classObject()))
             ->makes<Self>()
             .method<&Outlet<&Self::gesturePanel_>::set>("setGesturePanel:")
             .method<&Self::processGesture>("processGesture:")
             .method<&Self::cancelGestureInput>("cancelGestureInput:")
             .method<&Self::menu_itemSelected>("menu:itemSelected:")
             .method<&Self::doubleClickInColumn_row>("doubleClickInColumn:row:")
             .method<&Self::tableViewSelectionDidChange>("tableViewSelectionDidChange:");
    return *object;
}

namespace {

[[maybe_unused]] const Class& registered = VelmoraGesturesUI::classObject();

}  // namespace

void VelmoraGesturesUI::additionalInitialization() {
    const auto cell = makeCell(false);
    const NSSize size = cell->cellSize();
    triggerTC_->setDataCell(cell);
    triggerTC_->setWidth(size.width);
    triggerTC_->setResizable(false);
    tableView_->sizeToFit();
    tableView_->setRowHeight(size.height);
    tableView_->setDoubleClickDelegate(shared_from_this());
    tableView_->setDelegate(shared_from_this());
    setTitles("Define Gestures", "Gest.", "VelmoraGesturesPanel");
    if (gesturePreview_) gesturePreview_->setCell(makeCell(true));
    if (gesturePreviewDrawer_) gesturePreviewDrawer_->open(nullptr);
    if (toggleGesturePreview_) {
        toggleGesturePreview_->setTransparent(false);
        toggleGesturePreview_->setEnabled(true);
    }
    interceptMenus_ = false;
    gesturePanel_ = nullptr;
}

bool VelmoraGesturesUI::doubleClickInColumn_row(int column, int row) {
    const auto& columns = tableView_->tableColumns();
    if (column < 0 || column >= static_cast<int>(columns.size()) ||
        columns[static_cast<std::size_t>(column)] != triggerTC_) {
        return false;
    }
    learnRowIndex_ = row;
    learnGesture();
    return true;
}

void VelmoraGesturesUI::learnGesture() {
    if (!gesturePanel_) {
        loadNibNamed_owner(NSBundle::bundleForClass(), "EnterGesture", shared_from_this());
    }
    // Without the prompt nobody could end the training.
    if (!gesturePanel_) return;
    gesturePanel_->center();
    gesturePanel_->makeKeyAndOrderFront();
    setTraining(true);
}

void VelmoraGesturesUI::processGesture(const std::string& gesture) {
    if (gesturePanel_) gesturePanel_->close();
    const PropertyList trigger(gesture);
    settings_->setObject_forKey_atIndex(&trigger, "Trigger", learnRowIndex_);
    preview(gesture);
    tableView_->reloadData();
}

void VelmoraGesturesUI::cancelGestureInput(const Id& sender) {
    setTraining(false);
    if (gesturePanel_) gesturePanel_->performClose(sender);
}

void VelmoraGesturesUI::preview(const std::string& gesture) {
    if (gesturePreview_) gesturePreview_->setStringValue(gesture);
}

void VelmoraGesturesUI::tableViewSelectionDidChange(const NSNotification& notification) {
    if (notification.object != tableView_.get()) return;
    const bool one = tableView_->numberOfSelectedRows() == 1;
    setInterceptMenus(one);
    const VelmoraSettingRef record =
        one ? settings_->objectAtIndex(tableView_->selectedRow()) : nullptr;
    preview(record ? record->trigger() : std::string());
}

bool VelmoraGesturesUI::menu_itemSelected(NSMenu& menu, int index) {
    if (!interceptMenus_) return false;
    const NSMenuItemRef item = menu.itemAtIndex(index);
    if (!item || dynamic_cast<const VelmoraMenuItem*>(item.get())) return false;
    // Asked for first, which may hang our own submenu under another window's bar.
    NSApp().mainMenu();
    const NSMenu* top = &menu;
    while (top->supermenu()) top = top->supermenu();
    if (top->isMainMenu()) return false;
    const int row = tableView_->selectedRow();
    const PropertyList path(std::string(contextMenuPrefix) + VelmoraUtils::menuItemPathFor(*item));
    const PropertyList selector(NSStringFromSelector(item->action()));
    settings_->setObject_forKey_atIndex(&path, "Path", row);
    settings_->setObject_forKey_atIndex(&selector, "Selector", row);
    tableView_->reloadData();
    return true;
}

void VelmoraGesturesUI::windowWillClose(const NSNotification& notification) {
    if (gesturePanel_ && notification.object == gesturePanel_.get()) {
        cancelGestureInput(nullptr);
        return;
    }
    if (panel_ && notification.object == panel_.get()) {
        setInterceptMenus(false);
        // Nobody is left to learn what is drawn.
        if (gesturePanel_) gesturePanel_->close();
    }
    VelmoraCommonUI::windowWillClose(notification);
}

}  // namespace velmora
