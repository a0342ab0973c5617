#include "platform/headless/PngCodec.h"

#include <gtest/gtest.h>

#include <random>

namespace velmora {
namespace {

Bitmap picture(int width, int height) {
    Bitmap bitmap = Bitmap::blank(width, height);
    for (std::size_t i = 0; i < bitmap.pixels.size(); ++i) {
        bitmap.pixels[i] = static_cast<std::uint8_t>(i * 37 % 251);
    }
    return bitmap;
}

TEST(PngCodecTest, APictureComesBackAsItWas) {
    for (const auto& [width, height] : {std::pair{1, 1}, {16, 16}, {7, 300}}) {
        const Bitmap original = picture(width, height);
        EXPECT_EQ(decodePng(encodePng(original)), original) << width << " by " << height;
    }
}

TEST(PngCodecTest, WhatIsCutOffIsNoPicture) {
    const std::string whole = encodePng(picture(16, 16));
    for (std::size_t size = 0; size + 12 < whole.size(); ++size) {
        EXPECT_FALSE(decodePng(whole.substr(0, size))) << size;
    }
}

TEST(PngCodecTest, AHugePictureIsRefusedBeforeItsPixelsAreMade) {
    std::string bytes = encodePng(picture(1, 1));
    // The width in the header, with the header's own checksum.
    bytes.replace(16, 4, std::string("\x7F\xFF\xFF\xFF", 4));
    EXPECT_FALSE(decodePng(bytes));
    EXPECT_FALSE(decodePng(encodePng(picture(4097, 1))));
    EXPECT_TRUE(decodePng(encodePng(picture(4096, 1))));
}

TEST(PngCodecTest, DamagedBytesAreAPictureOfTheSameSizeOrNone) {
    const std::string whole = encodePng(picture(16, 16));
    std::mt19937 random(1);
    for (int round = 0; round < 2000; ++round) {
        std::string bytes = whole;
        for (int i = 0; i < 3; ++i) bytes[random() % bytes.size()] = static_cast<char>(random());
        const auto decoded = decodePng(bytes);
        if (decoded) {
            EXPECT_EQ(decoded->pixels.size(),
                      static_cast<std::size_t>(decoded->width * decoded->height) * 4);
        }
    }
}

}  // namespace
}  // namespace velmora
