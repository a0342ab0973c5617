#include "panels/VelmoraScriptsUI.h"

#include "platform/foundation/NSBundle.h"
#include "platform/runtime/Class.h"

namespace velmora {

Class& VelmoraScriptsUI::classObject() {
    static auto* object = &(new Class("VelmoraScriptsUI", &VelmoraTextSnippetsUI::classObject()))
                               ->makes<VelmoraScriptsUI>();
    return *object;
}

namespace {

[[maybe_unused]] const Class& registered = VelmoraScriptsUI::classObject();

}  // namespace

void VelmoraScriptsUI::initWithSettings_delegate(const std::shared_ptr<VelmoraSettings>& settings,
                                                 const std::shared_ptr<VelmoraCommon>& delegate) {
    VelmoraTextSnippetsUI::initWithSettings_delegate(settings, delegate);
    if (panel_) panel_->setTitle(localized("Scripts"));
}

}  // namespace velmora
