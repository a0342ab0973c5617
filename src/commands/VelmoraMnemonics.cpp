#include "commands/VelmoraMnemonics.h"

#include "platform/appkit/NSApplication.h"
#include "platform/appkit/controls/NSTextField.h"
#include "platform/foundation/NSNotificationCenter.h"
#include "platform/runtime/Class.h"

namespace velmora {

namespace {

constexpr int itemChosen = 1;

}  // namespace

Class& VelmoraMnemonics::classObject() {
    static auto* object =
        &(new Class("VelmoraMnemonics", &VelmoraCommon::classObject()))
             ->method<&VelmoraMnemonics::controlTextDidChange>("controlTextDidChange:")
             .method<&VelmoraMnemonics::control_textView_doCommandBySelector>(
                 "control:textView:doCommandBySelector:");
    return *object;
}

Class* VelmoraMnemonics::uiClass() {
    return Class::named("VelmoraMnemonicsUI");
}

VelmoraSettingRef VelmoraMnemonics::findTrigger(const std::optional<std::string>& trigger) {
    selectedMenuItem_ = nullptr;
    return VelmoraCommon::findTrigger(trigger);
}

void VelmoraMnemonics::controlTextDidChange(const NSNotification& notification) {
    const auto* field = dynamic_cast<const NSTextField*>(notification.object);
    if (!field) return;
    const VelmoraSettingRef definition = findTrigger(field->stringValue());
    if (!definition) return;
    NSMenuItemRef item = findMenuItem(*definition);
    if (!item) {
        updateMenu();
        return;
    }
    selectedMenuItem_ = std::move(item);
    NSApp().stopModalWithCode(itemChosen);
}

bool VelmoraMnemonics::control_textView_doCommandBySelector(NSTextField& /*control*/,
                                                            const Id& /*textView*/,
                                                            Selector command) {
    static const Selector cancel = Selector::named("cancel:");
    if (command != cancel) return false;
    NSApp().stopModal();
    return true;
}

void VelmoraMnemonics::executeMnemonic() {
    const NSMenuItemRef item = std::move(selectedMenuItem_);
    selectedMenuItem_ = nullptr;
    if (item) item->perform();
}

}  // namespace velmora
