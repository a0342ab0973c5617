#include "panels/VelmoraMnemonicsUI.h"

#include "platform/runtime/Class.h"

namespace velmora {

Class& VelmoraMnemonicsUI::classObject() {
    static auto* object = &(new Class("VelmoraMnemonicsUI", &VelmoraCommonUI::classObject()))
                               ->makes<VelmoraMnemonicsUI>();
    return *object;
}

namespace {

[[maybe_unused]] const Class& registered = VelmoraMnemonicsUI::classObject();

}  // namespace

void VelmoraMnemonicsUI::additionalInitialization() {
    setTitles("Define Mnemonics", "Mnemonic", "VelmoraMnemonicsPanel");
}

}  // namespace velmora
