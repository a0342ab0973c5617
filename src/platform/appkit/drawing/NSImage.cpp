#include "platform/appkit/drawing/NSImage.h"

#include <array>
#include <utility>

#include "platform/foundation/NSBundle.h"
#include "platform/port/Desktop.h"
#include "platform/port/FileSystem.h"
#include "platform/runtime/Class.h"

namespace velmora {

namespace {

ProcessWide<std::vector<NSImage*>> focused;

using Pixel = std::array<std::uint8_t, 4>;

Pixel sourceOver(const Pixel& source, const Pixel& below) {
    const int a = source[3];
    const int b = below[3] * (255 - a) / 255;
    const int alpha = a + b;
    Pixel result{0, 0, 0, static_cast<std::uint8_t>(alpha)};
    if (alpha == 0) return result;
    for (std::size_t i = 0; i < 3; ++i) {
        result[i] = static_cast<std::uint8_t>((source[i] * a + below[i] * b + alpha / 2) / alpha);
    }
    return result;
}

std::size_t offset(const Bitmap& bitmap, int x, int y) {
    const auto row = static_cast<std::size_t>(y) * static_cast<std::size_t>(bitmap.width);
    return (row + static_cast<std::size_t>(x)) * 4;
}

/// Each pixel four times.
Bitmap doubled(const Bitmap& bitmap) {
    Bitmap result = Bitmap::blank(2 * bitmap.width, 2 * bitmap.height);
    for (int y = 0; y < result.height; ++y) {
        for (int x = 0; x < result.width; ++x) {
            const auto* from = &bitmap.pixels[offset(bitmap, x / 2, y / 2)];
            std::copy(from, from + 4, &result.pixels[offset(result, x, y)]);
        }
    }
    return result;
}

/// Its upper left corner at that place.
void composite(const Bitmap& source, Bitmap& target, int left, int top,
               NSCompositingOperation operation) {
    for (int y = 0; y < source.height; ++y) {
        for (int x = 0; x < source.width; ++x) {
            const int tx = left + x;
            const int ty = top + y;
            if (tx < 0 || ty < 0 || tx >= target.width || ty >= target.height) continue;
            const auto* from = &source.pixels[offset(source, x, y)];
            auto* to = &target.pixels[offset(target, tx, ty)];
            Pixel pixel{from[0], from[1], from[2], from[3]};
            if (operation == NSCompositeSourceOver) {
                pixel = sourceOver(pixel, {to[0], to[1], to[2], to[3]});
            }
            std::copy(pixel.begin(), pixel.end(), to);
        }
    }
}

std::optional<std::string> resource(const std::string& name) {
    const auto path = NSBundle::bundleForClass().pathForImageResource(name);
    return path ? NSBundle::resourceFiles().contentsOfFile(*path) : std::nullopt;
}

}  // namespace

Class& NSImage::classObject() {
    static auto* object = new Class("NSImage", &NSObject::classObject());
    return *object;
}

NSImageRef NSImage::initWithData(std::string_view bytes) {
    std::optional<Bitmap> bitmap = desktop().decodeImage(bytes);
    return bitmap ? std::make_shared<NSImage>(std::move(*bitmap)) : nullptr;
}

NSImageRef NSImage::initWithResource(const std::string& name) {
    const auto bytes = resource(name);
    NSImageRef image = bytes ? initWithData(*bytes) : nullptr;
    if (image) image->addRepresentation(resource(name + "@2x").value_or(std::string()));
    return image;
}

const Bitmap* NSImage::doubledBitmap() const {
    if (!doubledBytes_.empty()) {
        const std::string bytes = std::exchange(doubledBytes_, {});
        std::optional<Bitmap> bitmap = desktop().decodeImage(bytes);
        const bool fits =
            bitmap && bitmap->width == 2 * bitmap_.width && bitmap->height == 2 * bitmap_.height;
        if (fits) doubled_ = std::move(bitmap);
    }
    return doubled_ ? &*doubled_ : nullptr;
}

NSImageRef NSImage::initWithSize(NSSize size) {
    return std::make_shared<NSImage>(
        Bitmap::blank(static_cast<int>(size.width), static_cast<int>(size.height)));
}

NSSize NSImage::size() const {
    return {static_cast<float>(bitmap_.width), static_cast<float>(bitmap_.height)};
}

void NSImage::lockFocus() {
    focused->push_back(this);
}

void NSImage::unlockFocus() {
    if (!focused->empty() && focused->back() == this) focused->pop_back();
}

void NSImage::compositeToPoint_operation(NSPoint point, NSCompositingOperation operation) const {
    if (focused->empty()) return;
    NSImage& target = *focused->back();
    const Bitmap* own = doubledBitmap();
    if (own && !target.doubledBitmap()) target.doubled_ = doubled(target.bitmap_);
    const int left = static_cast<int>(point.x);
    const int top = target.bitmap_.height - static_cast<int>(point.y) - bitmap_.height;
    composite(bitmap_, target.bitmap_, left, top, operation);
    if (target.doubledBitmap()) {
        composite(own ? *own : doubled(bitmap_), *target.doubled_, 2 * left, 2 * top, operation);
    }
}

}  // namespace velmora
