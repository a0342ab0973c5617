#include "platform/appkit/NSImage.h"

#include <array>

#include "platform/Desktop.h"
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

}  // namespace

Class& NSImage::classObject() {
    static auto* object = new Class("NSImage", &NSObject::classObject());
    return *object;
}

NSImageRef NSImage::initWithData(std::string_view bytes) {
    std::optional<Bitmap> bitmap = desktop().decodeImage(bytes);
    return bitmap ? std::make_shared<NSImage>(std::move(*bitmap)) : nullptr;
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
    Bitmap& target = focused->back()->bitmap_;
    const int left = static_cast<int>(point.x);
    const int top = target.height - static_cast<int>(point.y) - bitmap_.height;
    for (int y = 0; y < bitmap_.height; ++y) {
        for (int x = 0; x < bitmap_.width; ++x) {
            const int tx = left + x;
            const int ty = top + y;
            if (tx < 0 || ty < 0 || tx >= target.width || ty >= target.height) continue;
            const auto at = [](const Bitmap& b, int px, int py) {
                const auto row = static_cast<std::size_t>(py) * static_cast<std::size_t>(b.width);
                return (row + static_cast<std::size_t>(px)) * 4;
            };
            const auto* from = &bitmap_.pixels[at(bitmap_, x, y)];
            auto* to = &target.pixels[at(target, tx, ty)];
            Pixel pixel{from[0], from[1], from[2], from[3]};
            if (operation == NSCompositeSourceOver) {
                pixel = sourceOver(pixel, {to[0], to[1], to[2], to[3]});
            }
            std::copy(pixel.begin(), pixel.end(), to);
        }
    }
}

}  // namespace velmora
