#pragma once

#include <optional>
#include <string>

#include "platform/appkit/NSActionCell.h"
#include "platform/appkit/NSImage.h"

namespace velmora {

/// What of a button's title and picture is shown; the platform's numbers.
enum NSCellImagePosition { NSNoImage = 0, NSImageOnly = 1, NSImageLeft = 2 };

/// What a push button says and shows.
class NSButtonCell : public NSActionCell {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// Also the name by which the button is known where the title is not shown.
    const std::string& title() const { return title_; }
    void setTitle(std::string title) { title_ = std::move(title); }

    /// Null for none.
    const NSImageRef& image() const { return image_; }
    void setImage(NSImageRef image) { image_ = std::move(image); }

    /// How large the picture is shown, in points; nothing for its own size.
    std::optional<NSSize> imageSize() const { return imageSize_; }
    void setImageSize(NSSize size) { imageSize_ = size; }

    NSCellImagePosition imagePosition() const { return imagePosition_; }
    void setImagePosition(NSCellImagePosition position) { imagePosition_ = position; }

private:
    std::string title_;
    NSImageRef image_;
    std::optional<NSSize> imageSize_;
    NSCellImagePosition imagePosition_ = NSImageLeft;
};

}  // namespace velmora
