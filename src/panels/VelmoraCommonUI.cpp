#include "panels/VelmoraCommonUI.h"

#include <algorithm>
#include <set>
#include <unordered_set>

#include "panels/VelmoraGlobalFlagCell.h"
#include "panels/VelmoraMenuSelectorCell.h"
#include "platform/appkit/NSPasteboard.h"
#include "platform/appkit/controls/ObjectValue.h"
#include "platform/appkit/panels/NSNibLoading.h"
#include "platform/foundation/NSBundle.h"
#include "platform/foundation/NSNotificationCenter.h"
#include "platform/runtime/NSLog.h"
#include "platform/runtime/Outlet.h"

namespace velmora {

namespace {

constexpr const char* rowsType = "VelmoraPBType";
constexpr unsigned everyOperation =
    NSDragOperationCopy | NSDragOperationLink | NSDragOperationGeneric | NSDragOperationPrivate;

[[maybe_unused]] const Class& registered = VelmoraCommonUI::classObject();

}  // namespace

Class& VelmoraCommonUI::classObject() {
    using Self = VelmoraCommonUI;
    static auto* object =
        &(new Class("VelmoraCommonUI", &NSObject::classObject()))
             ->makes<Self>()
             .method<&Outlet<&Self::panel_>::set>("setPanel:")
             .method<&Outlet<&Self::globalFlagTC_>::set>("setGlobalFlagTC:")
             .method<&Outlet<&Self::menuItemTC_>::set>("setMenuItemTC:")
             .method<&Outlet<&Self::triggerTC_>::set>("setTriggerTC:")
             .method<&Outlet<&Self::gesturePreviewDrawer_>::set>("setGesturePreviewDrawer:")
             .method<&Outlet<&Self::gesturePreview_>::set>("setGesturePreview:")
             .method<&Outlet<&Self::toggleGesturePreview_>::set>("setToggleGesturePreview:")
             .method<&Outlet<&Self::tableView_>::set>("setTableView:")
             .method<&Self::initWithSettings_delegate>("initWithSettings:delegate:")
             .method<&Self::show>("show")
             .method<&Self::updateDisplay>("updateDisplay")
             .method<&Self::addDefinition>("addDefinition:")
             .method<&Self::deleteDefinition>("deleteDefinition:")
             .method<&Self::ok>("ok:")
             .method<&Self::windowWillClose>("windowWillClose:")
             .method<&Self::numberOfRowsInTableView>("numberOfRowsInTableView:")
             .method<&Self::tableView_objectValueForTableColumn_row>(
                 "tableView:objectValueForTableColumn:row:")
             .method<&Self::tableView_setObjectValue_forTableColumn_row>(
                 "tableView:setObjectValue:forTableColumn:row:")
             .method<&Self::tableView_writeRows_toPasteboard>("tableView:writeRows:toPasteboard:")
             .method<&Self::tableView_validateDrop_proposedRow_proposedDropOperation>(
                 "tableView:validateDrop:proposedRow:proposedDropOperation:")
             .method<&Self::tableView_acceptDrop_row_dropOperation>(
                 "tableView:acceptDrop:row:dropOperation:");
    return *object;
}

bool VelmoraCommonUI::load(const char* interface, const std::shared_ptr<VelmoraSettings>& settings,
                           const std::shared_ptr<VelmoraCommon>& delegate) {
    settings_ = settings;
    delegate_ = delegate;
    return loadNibNamed_owner(NSBundle::bundleForClass(), interface, shared_from_this());
}

bool VelmoraCommonUI::lacks(const char* interface, const char* outlet, const Id& object) {
    if (object) return false;
    NSLog(std::string("interface/") + interface + ".plist: outlets: '" + outlet +
          "' is missing or of another class");
    panel_ = nullptr;
    tableView_ = nullptr;
    return true;
}

void VelmoraCommonUI::initWithSettings_delegate(const std::shared_ptr<VelmoraSettings>& settings,
                                                const std::shared_ptr<VelmoraCommon>& delegate) {
    constexpr const char* interface = "ManagePanel";
    if (!load(interface, settings, delegate) || lacks(interface, "panel", panel_) ||
        lacks(interface, "globalFlagTC", globalFlagTC_) ||
        lacks(interface, "menuItemTC", menuItemTC_) || lacks(interface, "triggerTC", triggerTC_) ||
        lacks(interface, "tableView", tableView_)) {
        return;
    }
    const auto globalFlag = std::make_shared<VelmoraGlobalFlagCell>();
    globalFlag->init();
    globalFlagTC_->setDataCell(globalFlag);
    const auto menuSelector = std::make_shared<VelmoraMenuSelectorCell>();
    menuSelector->initTextCell_pullsDown("", true);
    menuItemTC_->setDataCell(menuSelector);
    additionalInitialization();
    tableView_->registerForDraggedTypes({rowsType});
}

void VelmoraCommonUI::setTitles(const char* title, const char* triggerHeader,
                                const char* autosaveName) {
    panel_->setTitle(localized(title));
    triggerTC_->headerCell()->setStringValue(localized(triggerHeader));
    panel_->setFrameAutosaveName(autosaveName);
}

void VelmoraCommonUI::show() {
    updateDisplay();
    if (panel_) panel_->makeKeyAndOrderFront();
}

void VelmoraCommonUI::updateDisplay() {
    if (tableView_) tableView_->reloadData();
}

void VelmoraCommonUI::addDefinition(const Id& sender) {
    const int row = settings_->count();
    settings_->addObject();
    const auto component = delegate_.lock();
    if (!sender && component) {
        const std::string untitled = localized("Untitled");
        std::string name = untitled;
        for (int counter = 2; component->findTrigger(name); ++counter) {
            name = untitled + " " + std::to_string(counter);
        }
        const PropertyList trigger(name);
        settings_->setObject_forKey_atIndex(&trigger, "Trigger", row);
    }
    tableView_->reloadData();
    tableView_->selectRow_byExtendingSelection(row, false);
    tableView_->scrollRowToVisible(row);
}

void VelmoraCommonUI::deleteDefinition(const Id& /*sender*/) {
    int lowest = settings_->count();
    std::unordered_set<const VelmoraSetting*> deleted;
    for (const int row : tableView_->selectedRowEnumerator()) {
        lowest = std::min(lowest, row);
        deleted.insert(settings_->objectAtIndex(row).get());
    }
    settings_->removeObjectsWhere(
        [&](const VelmoraSetting& record) { return deleted.contains(&record); });
    tableView_->reloadData();
    // What was selected is gone: the row that is now is another one, even under the same number.
    tableView_->deselectAll(nullptr);
    const int row = std::min(lowest, settings_->count() - 1);
    tableView_->selectRow_byExtendingSelection(row, false);
}

void VelmoraCommonUI::ok(const Id& sender) {
    // Closing the panel may free the controller.
    const NSPanelRef panel = panel_;
    if (const auto component = delegate_.lock()) component->storeAndActivateSettings();
    panel->performClose(sender);
}

int VelmoraCommonUI::numberOfRowsInTableView(NSTableView& /*table*/) {
    return settings_ ? settings_->count() : 0;
}

ObjectValue VelmoraCommonUI::tableView_objectValueForTableColumn_row(NSTableView& /*table*/,
                                                                     NSTableColumn& column,
                                                                     int row) {
    const VelmoraSettingRef record = settings_->objectAtIndex(row);
    auto value = record ? record->objectForKey(column.identifier()) : std::nullopt;
    return value ? ObjectValue(std::move(*value)) : ObjectValue();
}

void VelmoraCommonUI::tableView_setObjectValue_forTableColumn_row(NSTableView& /*table*/,
                                                                  const ObjectValue& value,
                                                                  NSTableColumn& column, int row) {
    if (const PropertyList* text = propertyListOf(value)) {
        settings_->setObject_forKey_atIndex(text, column.identifier(), row);
    } else if (const Id object = objectOf(value)) {
        settings_->setObject_forKey_atIndex(object, column.identifier(), row);
    }
}

bool VelmoraCommonUI::tableView_writeRows_toPasteboard(NSTableView& /*table*/,
                                                       const std::vector<int>& rows,
                                                       NSPasteboard& pasteboard) {
    NSArray numbers(rows.begin(), rows.end());
    pasteboard.declareTypes_owner({rowsType}, nullptr);
    pasteboard.setPropertyList_forType(std::move(numbers), rowsType);
    return true;
}

unsigned VelmoraCommonUI::tableView_validateDrop_proposedRow_proposedDropOperation(
    NSTableView& /*table*/, NSDraggingInfo& /*info*/, int /*row*/, int operation) {
    return operation == NSTableViewDropAbove ? everyOperation : NSDragOperationNone;
}

bool VelmoraCommonUI::tableView_acceptDrop_row_dropOperation(NSTableView& /*table*/,
                                                             NSDraggingInfo& info, int row,
                                                             int /*operation*/) {
    const PropertyList* dropped = info.draggingPasteboard().propertyListForType(rowsType);
    if (!dropped || !dropped->array()) return false;
    std::vector<VelmoraSettingRef>& array = settings_->array();
    const auto count = static_cast<int>(array.size());
    std::set<int> rows;
    std::vector<VelmoraSettingRef> moved;
    for (const PropertyList& number : *dropped->array()) {
        // The rows may be another table's.
        const int from = number.intValue().value_or(-1);
        if (from < 0 || from >= count || !rows.insert(from).second) continue;
        moved.push_back(array[static_cast<std::size_t>(from)]);
    }
    if (moved.empty()) return false;
    int destination = std::clamp(row, 0, count);
    for (auto from = rows.rbegin(); from != rows.rend(); ++from) {
        if (*from < destination) --destination;
        array.erase(array.begin() + *from);
    }
    array.insert(array.begin() + destination, moved.begin(), moved.end());
    for (std::size_t i = 0; i < moved.size(); ++i) {
        tableView_->selectRow_byExtendingSelection(destination + static_cast<int>(i), i > 0);
    }
    tableView_->reloadData();
    return true;
}

void VelmoraCommonUI::windowWillClose(const NSNotification& notification) {
    const auto component = delegate_.lock();
    if (component && panel_ && notification.object == panel_.get()) component->panelWillClose();
}

}  // namespace velmora
