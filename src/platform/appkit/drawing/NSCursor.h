#pragma once

#include <memory>

#include "platform/appkit/drawing/NSImage.h"
#include "platform/port/NSGeometry.h"
#include "platform/runtime/NSObject.h"

namespace velmora {

/// A pointer picture. The hot spot is measured from the picture's upper left corner.
class NSCursor final : public NSObject {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    NSCursor(NSImageRef image, NSPoint hotSpot) : image_(std::move(image)), hotSpot_(hotSpot) {}

    /// May be null: then the cursor changes nothing.
    const NSImageRef& image() const { return image_; }
    NSPoint hotSpot() const { return hotSpot_; }

    /// Shows this cursor in the whole application, above those pushed before.
    void push();
    /// Takes away the cursor that was pushed last, whichever it is; none: nothing happens.
    static void pop();

private:
    NSImageRef image_;
    NSPoint hotSpot_;
};

using NSCursorRef = std::shared_ptr<NSCursor>;

}  // namespace velmora
