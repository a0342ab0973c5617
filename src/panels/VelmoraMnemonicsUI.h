#pragma once

#include "panels/VelmoraCommonUI.h"

namespace velmora {

/// The panel in which mnemonics are defined.
class VelmoraMnemonicsUI final : public VelmoraCommonUI {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    void additionalInitialization() override;
};

}  // namespace velmora
