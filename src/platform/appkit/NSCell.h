#pragma once

#include <memory>
#include <string>

#include "platform/foundation/NSGeometry.h"
#include "platform/runtime/NSObject.h"

namespace velmora {

class NSView;

/// What draws a value within a view: one place of a table, or all of a control.
class NSCell : public NSObject {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    const std::string& stringValue() const { return stringValue_; }
    void setStringValue(std::string value) { stringValue_ = std::move(value); }

    /// How large it wants to be; by default as large as it may.
    virtual NSSize cellSize() { return {10000, 10000}; }

    /// Draws the value into the frame, in the coordinates of the view that is drawn.
    virtual void drawInteriorWithFrame_inView(NSRect /*frame*/, NSView* /*view*/) {}

private:
    std::string stringValue_;
};

}  // namespace velmora
