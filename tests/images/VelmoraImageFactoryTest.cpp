#include "images/VelmoraImageFactory.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "platform/port/Desktop.h"
#include "support/HeadlessHost.h"

namespace velmora {
namespace {

using Bytes = std::vector<std::uint8_t>;
using Colour = std::array<std::uint8_t, 3>;

Bytes chunk(const std::string& type, const Bytes& data) {
    const auto length = static_cast<std::uint32_t>(data.size());
    Bytes bytes{std::uint8_t(length >> 24U), std::uint8_t(length >> 16U),
                std::uint8_t(length >> 8U), std::uint8_t(length)};
    bytes.insert(bytes.end(), type.begin(), type.end());
    bytes.insert(bytes.end(), data.begin(), data.end());
    bytes.insert(bytes.end(), {0, 0, 0, 0});
    VelmoraImageFactory::fixPaletteCRC(bytes.data());
    return bytes;
}

Bytes png(const std::vector<Bytes>& chunks) {
    Bytes bytes{137, 80, 78, 71, 13, 10, 26, 10};
    for (const Bytes& c : chunks) bytes.insert(bytes.end(), c.begin(), c.end());
    return bytes;
}

std::string text(const Bytes& bytes) {
    return {bytes.begin(), bytes.end()};
}

TEST(VelmoraImageFactoryTest, TheChecksumIsThatOfThePngFormat) {
    const std::string check = "123456789";
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(check.data());
    EXPECT_EQ(crc(bytes, check.size()), 0xCBF43926U);
    EXPECT_EQ(chunk("IEND", {}), Bytes({0, 0, 0, 0, 'I', 'E', 'N', 'D', 0xAE, 0x42, 0x60, 0x82}));
}

TEST(VelmoraImageFactoryTest, ColoursTakeTheHueAndAreTruncatedToTheLastBit) {
    struct Row {
        Colour before;
        double hue;
        Colour after;
    };
    const std::vector<Row> rows{
        {{255, 0, 0}, 20, {0, 255, 0}},
        {{255, 0, 0}, 5, {255, 127, 0}},
        {{251, 106, 106}, 0, {251, 105, 105}},
        {{251, 106, 106}, 10, {251, 251, 105}},
        {{251, 106, 106}, 20, {105, 251, 105}},
        {{251, 106, 106}, 30, {105, 251, 251}},
        {{251, 106, 106}, 40, {105, 105, 251}},
        {{251, 106, 106}, 50, {251, 105, 251}},
        {{128, 128, 128}, 33, {128, 128, 128}},
        {{255, 255, 255}, 33, {255, 255, 255}},
        {{0, 0, 0}, 33, {0, 0, 0}},
        {{12, 200, 77}, 60, {12, 200, 77}},
        {{12, 200, 77}, -1, {12, 200, 77}},
        {{12, 200, 77}, 1e300, {12, 200, 77}},
    };
    for (const Row& row : rows) {
        Colour colour = row.before;
        VelmoraImageFactory::changeHueTo_atPointer(row.hue, colour.data());
        EXPECT_EQ(colour, row.after) << int(row.before[0]) << " at hue " << row.hue;
    }
}

TEST(VelmoraImageFactoryTest, AHueOutsideTheCircleGivesEveryByteBack) {
    for (int value = 0; value < 256 * 256; ++value) {
        const Colour before{std::uint8_t(value), std::uint8_t(value >> 8), 7};
        Colour colour = before;
        VelmoraImageFactory::changeHueTo_atPointer(60, colour.data());
        ASSERT_EQ(colour, before);
    }
}

TEST(VelmoraImageFactoryTest, APaletteThatIsNoWholeNumberOfColoursKeepsItsRest) {
    Bytes data(767, 0);
    for (std::size_t i = 0; i < data.size(); i += 3) data[i] = 255;
    Bytes palette = chunk("PLTE", data);
    VelmoraImageFactory::changeHueTo_inPalette(20, palette.data());
    EXPECT_EQ(palette[8 + 254 * 3 + 1], 255);
    EXPECT_EQ(palette[8 + 765], 255);  // the first byte of half a colour
    const Bytes changed(palette.begin() + 8, palette.end() - 4);
    EXPECT_EQ(palette, chunk("PLTE", changed));
}

TEST(VelmoraImageFactoryTest, ThePaletteIsFoundOnlyWhereItLiesWhollyInTheData) {
    const Bytes header = chunk("IHDR", Bytes(13, 1));
    const Bytes palette = chunk("PLTE", {1, 2, 3});
    Bytes tooLong = palette;
    tooLong[3] = 200;
    Bytes huge = header;
    huge[0] = 0xFF;
    Bytes cut = png({header, palette});
    cut.resize(cut.size() - 1);
    struct Row {
        const char* name;
        Bytes bytes;
        long offset;
    };
    const std::vector<Row> rows{
        {"after another chunk", png({header, palette}), 33},
        {"first of two", png({palette, palette}), 8},
        {"none", png({header, chunk("IDAT", {1})}), -1},
        {"signature only", png({}), -1},
        {"length past the end", png({header, tooLong}), -1},
        {"a chunk before it runs past the end", png({huge, palette}), -1},
        {"checksum cut off", cut, -1},
        {"nothing at all", {}, -1},
    };
    for (const Row& row : rows) {
        const std::uint8_t* found =
            VelmoraImageFactory::findPaletteIn_length(row.bytes.data(), row.bytes.size());
        EXPECT_EQ(found ? found - row.bytes.data() : -1, row.offset) << row.name;
    }
}

TEST(VelmoraImageFactoryTest, WhatCannotBeRecolouredIsSaidInTheLog) {
    HeadlessHost host;
    EXPECT_EQ(VelmoraImageFactory::imageFromData_withHue(std::nullopt, 3), nullptr);
    EXPECT_TRUE(host.log().empty());
    EXPECT_EQ(VelmoraImageFactory::imageFromData_withHue("GIF89a, not a PNG", 3), nullptr);
    EXPECT_EQ(VelmoraImageFactory::imageFromData_withHue(text(png({})), 3), nullptr);
    EXPECT_EQ(host.log(),
              std::vector<std::string>({"Icon is not a PNG file!", "Icon has no palette!"}));
}

TEST(VelmoraImageFactoryTest, EveryPictureIsMadeFromTheFilesOwnColours) {
    HeadlessHost host;
    const NSImageRef green = VelmoraImageFactory::iconWithHue(20);
    const NSImageRef blue = VelmoraImageFactory::iconWithHue(40);
    const NSImageRef greenAgain = VelmoraImageFactory::iconWithHue(20);
    ASSERT_TRUE(green && blue && greenAgain);
    EXPECT_NE(green->bitmap(), blue->bitmap());
    EXPECT_EQ(green->bitmap(), greenAgain->bitmap());
}

TEST(VelmoraImageFactoryTest, CursorsStayTheSameObjectsUntilTheHueIsSet) {
    HeadlessHost host;
    using Maker = NSCursorRef (*)();
    const std::vector<Maker> makers{&VelmoraImageFactory::cursor, &VelmoraImageFactory::cursorH,
                                    &VelmoraImageFactory::cursorV, &VelmoraImageFactory::cursorHV,
                                    &VelmoraImageFactory::cursorJog};
    std::vector<Bitmap> pictures;
    for (const Maker maker : makers) {
        VelmoraImageFactory::setHue(0);
        const NSCursorRef red = maker();
        EXPECT_EQ(maker(), red);
        VelmoraImageFactory::setHue(0);
        EXPECT_NE(maker(), red);
        VelmoraImageFactory::setHue(40);
        EXPECT_NE(maker()->image()->bitmap(), red->image()->bitmap());
        EXPECT_EQ(red->hotSpot(), (NSPoint{7, 7}));
        EXPECT_EQ(red->image()->size(), (NSSize{16, 16}));
        ASSERT_NE(red->image()->doubledBitmap(), nullptr);
        EXPECT_NE(*maker()->image()->doubledBitmap(), *red->image()->doubledBitmap());
        for (const Bitmap& other : pictures) EXPECT_NE(red->image()->bitmap(), other);
        pictures.push_back(red->image()->bitmap());
    }
}

TEST(VelmoraImageFactoryTest, AMissingOverlayLeavesTheCursorPictureAlone) {
    HeadlessHost host;
    VelmoraImageFactory::setHue(12);
    const NSCursorRef plain = VelmoraImageFactory::makeCursorWithOverlayNamed("NoSuchPicture");
    EXPECT_EQ(plain->image()->bitmap(), VelmoraImageFactory::cursorImage()->bitmap());
}

}  // namespace
}  // namespace velmora
