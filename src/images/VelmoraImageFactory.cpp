#include "images/VelmoraImageFactory.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "platform/foundation/NSBundle.h"
#include "platform/port/FileSystem.h"
#include "platform/runtime/NSLog.h"
#include "platform/runtime/ProcessWide.h"

namespace velmora {

std::array<std::uint32_t, 256> crc_table;

namespace {

constexpr std::array<std::uint8_t, 8> pngSignature{137, 80, 78, 71, 13, 10, 26, 10};
constexpr NSPoint hotSpot{7, 7};

ProcessWide<std::optional<std::string>> iconBytes;
ProcessWide<std::optional<std::string>> cursorBytes;
ProcessWide<std::optional<std::string>> doubledIconBytes;
ProcessWide<std::optional<std::string>> doubledCursorBytes;
ProcessWide<double> cursorHue;

/// What setHue drops.
struct CursorFamily {
    NSImageRef cursorImage;
    NSCursorRef cursor;
    NSCursorRef cursorH;
    NSCursorRef cursorV;
    NSCursorRef cursorHV;
    NSCursorRef cursorJog;
};
ProcessWide<CursorFamily> family;

std::uint32_t bigEndian(const std::uint8_t* bytes) {
    return std::uint32_t{bytes[0]} << 24U | std::uint32_t{bytes[1]} << 16U |
           std::uint32_t{bytes[2]} << 8U | std::uint32_t{bytes[3]};
}

void storeBigEndian(std::uint8_t* bytes, std::uint32_t value) {
    for (unsigned i = 0; i < 4; ++i) {
        bytes[i] = static_cast<std::uint8_t>(value >> (24U - 8U * i));
    }
}

std::optional<std::string> imageResource(const std::string& name) {
    const std::optional<std::string> path = NSBundle::bundleForClass().pathForImageResource(name);
    return path ? NSBundle::resourceFiles().contentsOfFile(*path) : std::nullopt;
}

const std::optional<std::string>& cached(std::optional<std::string>& bytes, const char* name) {
    if (!bytes) bytes = imageResource(name);
    return bytes;
}

/// With the finer picture beside it, in the same hue.
NSImageRef withDoubled(NSImageRef image, const std::optional<std::string>& bytes, double hue) {
    if (!image || !bytes) return image;
    if (auto doubled = VelmoraImageFactory::pngData_withHue(*bytes, hue)) {
        image->addRepresentation(std::move(*doubled));
    }
    return image;
}

NSCursorRef cached(NSCursorRef& cursor, const char* overlay) {
    if (!cursor) cursor = VelmoraImageFactory::makeCursorWithOverlayNamed(overlay);
    return cursor;
}

}  // namespace

void make_crc_table() {
    for (std::uint32_t n = 0; n < crc_table.size(); ++n) {
        std::uint32_t value = n;
        for (int bit = 0; bit < 8; ++bit) {
            value = (value & 1U) ? 0xEDB88320U ^ (value >> 1U) : value >> 1U;
        }
        crc_table[n] = value;
    }
}

std::uint32_t update_crc(std::uint32_t running, const std::uint8_t* bytes, std::size_t length) {
    if (crc_table[1] == 0) make_crc_table();
    for (std::size_t i = 0; i < length; ++i) {
        running = crc_table[(running ^ bytes[i]) & 0xFFU] ^ (running >> 8U);
    }
    return running;
}

std::uint32_t crc(const std::uint8_t* bytes, std::size_t length) {
    return ~update_crc(0xFFFFFFFFU, bytes, length);
}

bool VelmoraImageFactory::isPng(std::span<const std::uint8_t> bytes) {
    return bytes.size() >= pngSignature.size() &&
           std::equal(pngSignature.begin(), pngSignature.end(), bytes.begin());
}

const std::uint8_t* VelmoraImageFactory::findPaletteIn_length(const std::uint8_t* bytes,
                                                              std::size_t length) {
    // A chunk is its length, its type, that many bytes of data, and a checksum.
    std::size_t position = pngSignature.size();
    while (length >= 12 && position <= length - 12) {
        const std::size_t dataLength = bigEndian(bytes + position);
        if (dataLength > length - 12 - position) return nullptr;
        if (std::memcmp(bytes + position + 4, "PLTE", 4) == 0) return bytes + position;
        position += dataLength + 12;
    }
    return nullptr;
}

void VelmoraImageFactory::fixPaletteCRC(std::uint8_t* chunk) {
    const std::size_t length = bigEndian(chunk);
    storeBigEndian(chunk + 8 + length, crc(chunk + 4, length + 4));
}

void VelmoraImageFactory::changeHueTo_atPointer(double hue, std::uint8_t* colour) {
    double r = colour[0] / 255.0;
    double g = colour[1] / 255.0;
    double b = colour[2] / 255.0;
    const double v = std::max({r, g, b});
    if (v == 0) return;
    const double m = std::min({r, g, b});
    if (m == v) return;
    const double s = (v - m) / v;
    const double h = hue / 10.0;
    const double i = std::floor(h);
    const double f = h - i;
    const double p = v * (1 - s);
    const double q = v * (1 - f * s);
    const double t = v * (1 - (1 - f) * s);
    if (i == 0) {
        r = v, g = t, b = p;
    } else if (i == 1) {
        r = q, g = v, b = p;
    } else if (i == 2) {
        r = p, g = v, b = t;
    } else if (i == 3) {
        r = p, g = q, b = v;
    } else if (i == 4) {
        r = t, g = p, b = v;
    } else if (i == 5) {
        r = v, g = p, b = q;
    }
    // Truncated, not rounded: the last bit of what stands above decides.
    const auto byte = [](double component) {
        return static_cast<std::uint8_t>(std::clamp(static_cast<int>(component * 255.0), 0, 255));
    };
    colour[0] = byte(r);
    colour[1] = byte(g);
    colour[2] = byte(b);
}

void VelmoraImageFactory::changeHueTo_inPalette(double hue, std::uint8_t* chunk) {
    const std::size_t count = bigEndian(chunk) / 3;
    for (std::size_t i = 0; i < count; ++i) changeHueTo_atPointer(hue, chunk + 8 + 3 * i);
    fixPaletteCRC(chunk);
}

std::optional<std::string> VelmoraImageFactory::pngData_withHue(std::string_view data, double hue) {
    std::string copy(data);
    auto* bytes = reinterpret_cast<std::uint8_t*>(copy.data());
    if (!isPng({bytes, copy.size()})) {
        NSLog("Icon is not a PNG file!");
        return std::nullopt;
    }
    const std::uint8_t* palette = findPaletteIn_length(bytes, copy.size());
    if (!palette) {
        NSLog("Icon has no palette!");
        return std::nullopt;
    }
    changeHueTo_inPalette(hue, bytes + (palette - bytes));
    return copy;
}

NSImageRef VelmoraImageFactory::imageFromData_withHue(const std::optional<std::string>& data,
                                                      double hue) {
    if (!data) return nullptr;
    const std::optional<std::string> copy = pngData_withHue(*data, hue);
    return copy ? NSImage::initWithData(*copy) : nullptr;
}

const std::optional<std::string>& VelmoraImageFactory::iconData() {
    return cached(*iconBytes, "vm");
}

const std::optional<std::string>& VelmoraImageFactory::cursorData() {
    return cached(*cursorBytes, "vmc");
}

NSImageRef VelmoraImageFactory::iconWithHue(double hue) {
    return withDoubled(imageFromData_withHue(iconData(), hue), cached(*doubledIconBytes, "vm@2x"),
                       hue);
}

NSImageRef VelmoraImageFactory::cursorWithHue(double hue) {
    return withDoubled(imageFromData_withHue(cursorData(), hue),
                       cached(*doubledCursorBytes, "vmc@2x"), hue);
}

void VelmoraImageFactory::setHue(double hue) {
    cursorHue = hue;
    family = CursorFamily();
}

NSImageRef VelmoraImageFactory::cursorImage() {
    if (!family->cursorImage) family->cursorImage = cursorWithHue(*cursorHue);
    return family->cursorImage;
}

NSCursorRef VelmoraImageFactory::cursor() {
    if (!family->cursor) family->cursor = std::make_shared<NSCursor>(cursorImage(), hotSpot);
    return family->cursor;
}

NSCursorRef VelmoraImageFactory::cursorH() {
    return cached(family->cursorH, "CursorH");
}

NSCursorRef VelmoraImageFactory::cursorV() {
    return cached(family->cursorV, "CursorV");
}

NSCursorRef VelmoraImageFactory::cursorHV() {
    return cached(family->cursorHV, "CursorHV");
}

NSCursorRef VelmoraImageFactory::cursorJog() {
    return cached(family->cursorJog, "CursorJog");
}

NSCursorRef VelmoraImageFactory::makeCursorWithOverlayNamed(const std::string& name) {
    const NSImageRef overlay = NSImage::initWithResource(name);
    const NSImageRef picture = NSImage::initWithSize({16, 16});
    picture->lockFocus();
    if (const NSImageRef base = cursorImage()) {
        base->compositeToPoint_operation({0, 0}, NSCompositeCopy);
    }
    if (overlay) overlay->compositeToPoint_operation({0, 0}, NSCompositeSourceOver);
    picture->unlockFocus();
    return std::make_shared<NSCursor>(picture, hotSpot);
}

}  // namespace velmora
