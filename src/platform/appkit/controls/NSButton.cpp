#include "platform/appkit/controls/NSButton.h"

#include "platform/runtime/Class.h"

namespace velmora {

namespace {

[[maybe_unused]] const Class& registered = NSButton::classObject();

}  // namespace

Class& NSButton::classObject() {
    static auto* object = &(new Class("NSButton", &NSControl::classObject()))->makes<NSButton>();
    return *object;
}

void NSButton::performClick(const Id& sender) {
    if (isEnabled()) buttonCell().setNextState();
    NSControl::performClick(sender);
}

}  // namespace velmora
