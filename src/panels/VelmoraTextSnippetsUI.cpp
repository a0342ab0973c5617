#include "panels/VelmoraTextSnippetsUI.h"

#include "panels/VelmoraGlobalFlagCell.h"
#include "platform/foundation/NSNotificationCenter.h"
#include "platform/runtime/Outlet.h"

namespace velmora {

namespace {

constexpr float textSize = 11;

}  // namespace

Class& VelmoraTextSnippetsUI::classObject() {
    using Self = VelmoraTextSnippetsUI;
    static auto* object =
        &(new Class("VelmoraTextSnippetsUI", &VelmoraCommonUI::classObject()))
             ->makes<Self>()
             .method<&Outlet<&Self::textArea_>::set>("setTextArea:")
             .method<&Self::tableViewSelectionDidChange>("tableViewSelectionDidChange:")
             .method<&Self::textDidChange>("textDidChange:");
    return *object;
}

namespace {

[[maybe_unused]] const Class& registered = VelmoraTextSnippetsUI::classObject();

}  // namespace

void VelmoraTextSnippetsUI::initWithSettings_delegate(
    const std::shared_ptr<VelmoraSettings>& settings,
    const std::shared_ptr<VelmoraCommon>& delegate) {
    constexpr const char* interface = "TextSnippets";
    if (!load(interface, settings, delegate) || lacks(interface, "panel", panel_) ||
        lacks(interface, "globalFlagTC", globalFlagTC_) ||
        lacks(interface, "tableView", tableView_) || lacks(interface, "textArea", textArea_)) {
        return;
    }
    const auto globalFlag = std::make_shared<VelmoraGlobalFlagCell>();
    globalFlag->init();
    globalFlagTC_->setDataCell(globalFlag);
    textArea_->setFont(NSFont::userFixedPitchFontOfSize(textSize));
    textArea_->setEditable(false);
}

void VelmoraTextSnippetsUI::addDefinition(const Id& /*sender*/) {
    VelmoraCommonUI::addDefinition(nullptr);
}

void VelmoraTextSnippetsUI::tableViewSelectionDidChange(const NSNotification& /*notification*/) {
    const VelmoraSettingRef record = settings_->objectAtIndex(tableView_->selectedRow());
    if (!record) return;
    shown_ = record;
    textArea_->setString(record->path());
    textArea_->setEditable(true);
}

void VelmoraTextSnippetsUI::textDidChange(const NSNotification& /*notification*/) {
    const int row = tableView_->selectedRow();
    if (row < 0) return;
    if (settings_->objectAtIndex(row) != shown_.lock()) {
        // Another application's changes have put another definition into the row: it keeps its
        // text.
        return tableViewSelectionDidChange({});
    }
    const PropertyList text(textArea_->string());
    settings_->setObject_forKey_atIndex(&text, "Path", row);
}

}  // namespace velmora
