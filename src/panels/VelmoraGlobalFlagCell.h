#pragma once

#include "platform/appkit/controls/NSButtonCell.h"

namespace velmora {

/// Shows by a globe that a definition is shared by all applications, and is clicked to change that.
class VelmoraGlobalFlagCell final : public NSButtonCell {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    static NSImageRef offImage() { return nullptr; }
    /// Read once a process; null while the pictures are missing.
    static NSImageRef onImage();
    static NSImageRef onImageSmall();

    void init();

    /// Takes only a number.
    void setObjectValue(const ObjectValue& value) override;
    /// With the large globe where there is room for it.
    void drawInteriorWithFrame_inView(NSRect frame, NSView* view) override;
};

}  // namespace velmora
