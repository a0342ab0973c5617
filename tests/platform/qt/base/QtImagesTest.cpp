// What is a picture is so with both versions of Qt, and on the headless desktop.

#include "platform/qt/base/QtImages.h"

#include <gtest/gtest.h>

#include <utility>

#include "platform/headless/PngCodec.h"

namespace velmora {
namespace {

TEST(QtImagesTest, PicturesAreTakenAndRefusedAsOnTheHeadlessDesktop) {
    const std::pair<int, int> sizes[] = {{1, 1},    {4096, 2}, {2, 4096},
                                         {4097, 1}, {1, 4097}, {4097, 4097}};
    for (const auto& [width, height] : sizes) {
        SCOPED_TRACE(std::to_string(width) + " by " + std::to_string(height));
        const std::string png = encodePng(Bitmap::blank(width, height));
        const auto decoded = decodeImage(png);
        EXPECT_EQ(decoded.has_value(), width <= 4096 && height <= 4096);
        EXPECT_EQ(decoded, decodePng(png));
    }
    EXPECT_FALSE(decodeImage("no picture"));
    EXPECT_FALSE(decodeImage(""));
}

}  // namespace
}  // namespace velmora
