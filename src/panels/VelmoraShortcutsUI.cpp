#include "panels/VelmoraShortcutsUI.h"

#include "commands/VelmoraShortcutFormatter.h"
#include "commands/VelmoraShortcuts.h"
#include "commands/VelmoraTriggers.h"
#include "definitions/VelmoraUtils.h"
#include "platform/appkit/controls/NSTextFieldCell.h"
#include "platform/appkit/panels/NSAlert.h"
#include "platform/foundation/NSBundle.h"
#include "platform/runtime/Class.h"

namespace velmora {

namespace {

/// The text with its placeholders "%@" filled in, in turn.
std::string filled(std::string text, const std::vector<std::string>& values) {
    std::size_t place = 0;
    for (const std::string& value : values) {
        place = text.find("%@", place);
        if (place == std::string::npos) break;
        text.replace(place, 2, value);
        place += value.size();
    }
    return text;
}

}  // namespace

Class& VelmoraShortcutsUI::classObject() {
    using Self = VelmoraShortcutsUI;
    static auto* object =
        &(new Class("VelmoraShortcutsUI", &VelmoraCommonUI::classObject()))
             ->makes<Self>()
             .method<&Self::otherMouseDown_inRow>("otherMouseDown:inRow:")
             .method<&Self::performKeyEquivalent_inRow>("performKeyEquivalent:inRow:")
             .method<&Self::duplicateShortcutAlertSheetDidEnd_returnCode_contextInfo>(
                 "duplicateShortcutAlertSheetDidEnd:returnCode:contextInfo:");
    return *object;
}

namespace {

[[maybe_unused]] const Class& registered = VelmoraShortcutsUI::classObject();

}  // namespace

void VelmoraShortcutsUI::additionalInitialization() {
    const auto cell = std::dynamic_pointer_cast<NSTextFieldCell>(triggerTC_->dataCell());
    if (cell) {
        cell->setDrawsBackground(true);
        cell->setBackgroundColor(NSColor::lightGrayColor());
        cell->setBordered(true);
        cell->setAlignment(NSCenterTextAlignment);
        cell->setFormatter(std::make_shared<VelmoraShortcutFormatter>());
    }
    triggerTC_->setWidth(triggerTC_->width() / 2);
    triggerTC_->setEditable(false);
    triggerTC_->setResizable(false);
    tableView_->sizeToFit();
    setTitles("Define Menu Shortcuts", "Menu Shortcut", "VelmoraShortcutsPanel");
}

void VelmoraShortcutsUI::setTrigger(const std::string& trigger, int row) {
    const PropertyList value(trigger);
    settings_->setObject_forKey_atIndex(&value, triggerTC_->identifier(), row);
}

void VelmoraShortcutsUI::captured(const std::string& trigger, int row) {
    setTrigger(trigger, row);
    if (const auto component = delegate_.lock()) component->save();
    tableView_->reloadData();
}

void VelmoraShortcutsUI::otherMouseDown_inRow(const NSEventRef& event, int row) {
    const std::string key = keyForMouseButton(event->buttonNumber());
    captured(triggerForKey_modifierFlags(key, event->modifierFlags()), row);
}

bool VelmoraShortcutsUI::performKeyEquivalent_inRow(const NSEventRef& event, int row) {
    const std::string key = event ? event->fields().charactersIgnoringModifiers : std::string();
    const std::string trigger =
        triggerForKey_modifierFlags(key, event ? event->modifierFlags() : 0);
    const auto component = std::dynamic_pointer_cast<VelmoraShortcuts>(delegate_.lock());
    const NSMenuItemRef owner =
        component ? component->findShortcut_withModifiers(key, modifierFlagsForTrigger(trigger))
                  : nullptr;
    if (owner) {
        askAbout(trigger, *owner);
    } else {
        captured(trigger, row);
    }
    return true;
}

void VelmoraShortcutsUI::askAbout(const std::string& trigger, const NSMenuItem& owner) {
    const PropertyList value(trigger);
    const std::string path = VelmoraUtils::menuItemPathFor(owner);
    const std::string question = localized(
        "The shortcut '%@' is already in use for '%@', would you like to use it anyway "
        "(deleting it for '%@')?");
    const VelmoraShortcutFormatter formatter;
    const std::string shown =
        filled(question, {formatter.stringForObjectValue(&value), path, path});
    const std::string spoken =
        filled(question, {formatter.spokenStringForObjectValue(&value), path, path});
    NSBeginAlertSheet(localized("Shortcut already in use"), localized("Use anyway"),
                      localized("Cancel"), "", *panel_, shared_from_this(),
                      Selector::named("duplicateShortcutAlertSheetDidEnd:returnCode:contextInfo:"),
                      value, shown, spoken);
}

void VelmoraShortcutsUI::duplicateShortcutAlertSheetDidEnd_returnCode_contextInfo(
    NSPanel& /*sheet*/, int returnCode, const PropertyList& trigger) {
    if (returnCode != NSAlertDefaultReturn || !trigger.string()) return;
    captured(*trigger.string(), tableView_->selectedRow());
}

void VelmoraShortcutsUI::tableView_setObjectValue_forTableColumn_row(NSTableView& table,
                                                                     const ObjectValue& value,
                                                                     NSTableColumn& column,
                                                                     int row) {
    VelmoraCommonUI::tableView_setObjectValue_forTableColumn_row(table, value, column, row);
    if (&column != menuItemTC_.get()) return;
    const auto copy = std::dynamic_pointer_cast<NSMenuItem>(objectOf(value));
    const auto item =
        copy ? std::dynamic_pointer_cast<NSMenuItem>(copy->representedObject()) : nullptr;
    if (!item) return;
    setTrigger(triggerForMenuItem(*item), row);
    tableView_->reloadData();
}

}  // namespace velmora
