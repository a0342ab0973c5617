#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/appkit/controls/NSFormatter.h"
#include "platform/appkit/controls/ObjectValue.h"
#include "platform/appkit/drawing/NSFont.h"
#include "platform/appkit/drawing/NSImage.h"
#include "platform/port/NSGeometry.h"
#include "platform/runtime/NSObject.h"

namespace velmora {

class NSControl;
class NSView;

/// Off and on, as a cell's state.
enum NSCellStateValue : int { NSOffState = 0, NSOnState = 1 };

/// The platform's numbers.
enum NSTextAlignment {
    NSLeftTextAlignment = 0,
    NSRightTextAlignment = 1,
    NSCenterTextAlignment = 2
};
enum NSControlSize { NSRegularControlSize = 0, NSSmallControlSize = 1 };

/// What shows a value within a view: all of a control, one place of a matrix, or, as the data cell
/// of a table's column, one row after the other. A change of a control's cell shows at once.
class NSCell : public NSObject {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// The value; a class that derives from it may take only some and keep it in another form.
    virtual ObjectValue objectValue() const { return value_; }
    virtual void setObjectValue(const ObjectValue& value);

    /// What of the value is shown as text: through the formatter where there is one.
    const std::string& stringValue() const { return stringValue_; }
    /// The value in words, for tool tips and screen readers.
    std::string spokenValue() const;
    /// The text becomes the value, past the formatter.
    void setStringValue(std::string value);

    /// The value read as a number: 0 for what is none.
    virtual int intValue() const;
    virtual void setIntValue(int value) { setObjectValue(PropertyList(value)); }
    double doubleValue() const;

    int state() const { return state_; }
    void setState(int state);
    int tag() const { return tag_; }
    void setTag(int tag) { tag_ = tag; }
    bool isEnabled() const { return enabled_; }
    void setEnabled(bool enabled);

    /// Null for none.
    const NSImageRef& image() const { return image_; }
    void setImage(NSImageRef image);
    /// How large the picture is shown, in points; nothing for its own size.
    std::optional<NSSize> imageSize() const { return imageSize_; }
    void setImageSize(NSSize size);

    /// Nothing for the desktop's own.
    const std::optional<NSFont>& font() const { return font_; }
    void setFont(NSFont font);
    NSTextAlignment alignment() const { return alignment_; }
    void setAlignment(NSTextAlignment alignment);
    NSControlSize controlSize() const { return controlSize_; }
    void setControlSize(NSControlSize size);
    bool isBordered() const { return bordered_; }
    void setBordered(bool bordered);

    /// Null for none.
    const NSFormatterRef& formatter() const { return formatter_; }
    /// The value is shown through it from here on.
    void setFormatter(NSFormatterRef formatter);

    /// How large it wants to be; by default as large as it may.
    virtual NSSize cellSize() { return {10000, 10000}; }

    /// Draws the value into the frame, in the coordinates of the view that is drawn. What a desktop
    /// shows itself (texts, pictures, boxes) a cell need not draw.
    virtual void drawInteriorWithFrame_inView(NSRect /*frame*/, NSView* /*view*/) {}

    // For controls

    /// The control that is told of changes, which takes it back before it goes; null for none.
    void setControlView(NSControl* control) { controlView_ = control; }
    NSControl* controlView() const { return controlView_; }

protected:
    /// What it shows has changed.
    void changed();

private:
    ObjectValue value_;
    std::string stringValue_;
    NSImageRef image_;
    std::optional<NSSize> imageSize_;
    std::optional<NSFont> font_;
    NSFormatterRef formatter_;
    NSControl* controlView_ = nullptr;
    int state_ = NSOffState;
    int tag_ = 0;
    NSTextAlignment alignment_ = NSLeftTextAlignment;
    NSControlSize controlSize_ = NSRegularControlSize;
    bool enabled_ = true;
    bool bordered_ = false;
};

using NSCellRef = std::shared_ptr<NSCell>;

}  // namespace velmora
