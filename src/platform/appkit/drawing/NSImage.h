#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/port/Bitmap.h"
#include "platform/port/NSGeometry.h"
#include "platform/runtime/NSObject.h"

namespace velmora {

/// The platform's numbers of the two compositing operations in use.
enum NSCompositingOperation { NSCompositeCopy = 1, NSCompositeSourceOver = 2 };

/// A picture, from a file's bytes or drawn off the screen: a pixel for each point and, maybe, the
/// same with twice the pixels across and down, for displays that have them.
class NSImage final : public NSObject {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    explicit NSImage(Bitmap bitmap) : bitmap_(std::move(bitmap)) {}

    /// Decodes the bytes of a picture file; null when they are none.
    static std::shared_ptr<NSImage> initWithData(std::string_view bytes);
    /// The picture among our resources, from the files NAME.png and, if there, NAME@2x.png; null
    /// without the first.
    static std::shared_ptr<NSImage> initWithResource(const std::string& name);
    /// A transparent picture of that size.
    static std::shared_ptr<NSImage> initWithSize(NSSize size);

    NSSize size() const;
    const Bitmap& bitmap() const { return bitmap_; }
    /// With twice the pixels, or null.
    const Bitmap* doubledBitmap() const;

    /// Adds the one with twice the pixels, from a file's bytes, which are decoded when somebody
    /// wants it; other bytes, or another size, are as good as none.
    void addRepresentation(std::string bytes) { doubledBytes_ = std::move(bytes); }

    /// From here to unlockFocus, compositeToPoint draws into this image.
    void lockFocus();
    void unlockFocus();

    /// Draws this image into the one that has the focus, its lower left corner at the point; what
    /// lies outside is cut off. Without a focus it does nothing.
    void compositeToPoint_operation(NSPoint point, NSCompositingOperation operation) const;

private:
    Bitmap bitmap_;
    mutable std::optional<Bitmap> doubled_;
    mutable std::string doubledBytes_;
};

using NSImageRef = std::shared_ptr<NSImage>;

}  // namespace velmora
