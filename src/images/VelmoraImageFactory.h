#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/appkit/drawing/NSCursor.h"
#include "platform/appkit/drawing/NSImage.h"

namespace velmora {

/// Makes the icon and the cursors in any hue, by rewriting the palette of indexed-colour PNG
/// pictures: coloured entries get the hue and keep saturation and value, greys stay. The pixels are
/// not touched.
///
/// A hue runs from 0 up to 60 for one turn of the colour circle (0 red, 20 green, 40 blue); outside
/// of it colours stay as they are.
class VelmoraImageFactory {
public:
    /// Whether the bytes begin with the PNG signature.
    static bool isPng(std::span<const std::uint8_t> bytes);

    /// The start (the length field) of the first PLTE chunk that lies wholly in the data, or null.
    static const std::uint8_t* findPaletteIn_length(const std::uint8_t* bytes, std::size_t length);

    /// Computes and stores the checksum of a whole chunk.
    static void fixPaletteCRC(std::uint8_t* chunk);

    /// Re-hues one colour: three bytes red, green, blue.
    static void changeHueTo_atPointer(double hue, std::uint8_t* colour);
    /// Re-hues every entry of a whole PLTE chunk and mends its checksum.
    static void changeHueTo_inPalette(double hue, std::uint8_t* chunk);

    /// A copy of the PNG file's bytes with its palette in the hue. Nothing, with a line in the log,
    /// when they are no PNG or have no palette.
    static std::optional<std::string> pngData_withHue(std::string_view data, double hue);
    /// A new image of these bytes; null without data, and where pngData_withHue has nothing.
    static NSImageRef imageFromData_withHue(const std::optional<std::string>& data, double hue);

    /// The bytes of the pictures "vm" and "vmc", read once; nothing while they are missing.
    static const std::optional<std::string>& iconData();
    static const std::optional<std::string>& cursorData();
    /// New images on every call.
    static NSImageRef iconWithHue(double hue);
    static NSImageRef cursorWithHue(double hue);

    /// Sets the hue of the cursors and drops those made so far.
    static void setHue(double hue);
    /// The cursor picture, and the cursors, in that hue: the same objects until the next setHue.
    static NSImageRef cursorImage();
    static NSCursorRef cursor();
    static NSCursorRef cursorH();
    static NSCursorRef cursorV();
    static NSCursorRef cursorHV();
    static NSCursorRef cursorJog();
    /// A new cursor: the cursor picture with that picture over it.
    static NSCursorRef makeCursorWithOverlayNamed(const std::string& name);
};

/// The checksum of PNG chunks. update_crc goes on from a running value, which begins with all ones
/// and is complemented at the end, as crc does both.
extern std::array<std::uint32_t, 256> crc_table;
void make_crc_table();
std::uint32_t update_crc(std::uint32_t running, const std::uint8_t* bytes, std::size_t length);
std::uint32_t crc(const std::uint8_t* bytes, std::size_t length);

}  // namespace velmora
