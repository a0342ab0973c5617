#pragma once

#include "panels/VelmoraTextSnippetsUI.h"

namespace velmora {

/// The text snippets' panel with scripts in it.
class VelmoraScriptsUI final : public VelmoraTextSnippetsUI {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    void initWithSettings_delegate(const std::shared_ptr<VelmoraSettings>& settings,
                                   const std::shared_ptr<VelmoraCommon>& delegate) override;
};

}  // namespace velmora
