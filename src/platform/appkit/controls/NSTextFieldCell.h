#pragma once

#include "platform/appkit/controls/NSActionCell.h"
#include "platform/appkit/drawing/NSColor.h"

namespace velmora {

/// A text of one line.
class NSTextFieldCell final : public NSActionCell {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// Black is the desktop's own colour for texts, whatever that is.
    NSColor textColor() const { return textColor_; }
    void setTextColor(NSColor color);
    NSColor backgroundColor() const { return backgroundColor_; }
    void setBackgroundColor(NSColor color);
    /// Whether the background has its colour.
    bool drawsBackground() const { return drawsBackground_; }
    void setDrawsBackground(bool draws);

private:
    NSColor textColor_ = NSColor::blackColor();
    NSColor backgroundColor_ = NSColor::whiteColor();
    bool drawsBackground_ = false;
};

using NSTextFieldCellRef = std::shared_ptr<NSTextFieldCell>;

}  // namespace velmora
