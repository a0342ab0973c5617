#include "platform/appkit/drawing/NSImage.h"

#include <gtest/gtest.h>

#include "platform/headless/PngCodec.h"
#include "support/HeadlessHost.h"

namespace velmora {
namespace {

using Pixel = std::array<int, 4>;

Pixel pixelOf(const NSImage& image, int x, int y) {
    const Bitmap& bitmap = image.bitmap();
    const auto* at = &bitmap.pixels[static_cast<std::size_t>((y * bitmap.width + x) * 4)];
    return {at[0], at[1], at[2], at[3]};
}

NSImageRef filled(int width, int height, const Pixel& pixel) {
    Bitmap bitmap = Bitmap::blank(width, height);
    for (std::size_t i = 0; i < bitmap.pixels.size(); ++i) {
        bitmap.pixels[i] = static_cast<std::uint8_t>(pixel[i % 4]);
    }
    return std::make_shared<NSImage>(std::move(bitmap));
}

constexpr Pixel clear = {0, 0, 0, 0};

TEST(NSImageTest, APictureLiesWithItsLowerLeftCornerAtThePoint) {
    const HeadlessHost host;
    const NSImageRef target = NSImage::initWithSize({4, 4});
    target->lockFocus();
    filled(2, 1, {9, 8, 7, 255})->compositeToPoint_operation({1, 0}, NSCompositeCopy);
    target->unlockFocus();
    for (int y = 0; y < 4; ++y) {
        for (int x = 0; x < 4; ++x) {
            const bool inside = y == 3 && (x == 1 || x == 2);
            EXPECT_EQ(pixelOf(*target, x, y), (inside ? Pixel{9, 8, 7, 255} : clear)) << x << y;
        }
    }
}

TEST(NSImageTest, WhatLiesOutsideIsCutOff) {
    const HeadlessHost host;
    const NSImageRef target = NSImage::initWithSize({3, 3});
    const NSImageRef big = filled(5, 5, {1, 2, 3, 255});
    target->lockFocus();
    for (const NSPoint point : {NSPoint{2, 2}, NSPoint{-4, -4}, NSPoint{50, 0}, NSPoint{0, -50}}) {
        big->compositeToPoint_operation(point, NSCompositeCopy);
    }
    target->unlockFocus();
    EXPECT_EQ(pixelOf(*target, 2, 0), (Pixel{1, 2, 3, 255}));
    EXPECT_EQ(pixelOf(*target, 0, 2), (Pixel{1, 2, 3, 255}));
    EXPECT_EQ(pixelOf(*target, 1, 1), clear);
}

TEST(NSImageTest, CopyReplacesWhatIsBelowAndSourceOverBlendsWithIt) {
    const HeadlessHost host;
    struct Case {
        Pixel below;
        Pixel above;
        Pixel over;
    };
    for (const Case& c : {Case{{0, 0, 255, 255}, {255, 0, 0, 255}, {255, 0, 0, 255}},
                          Case{{0, 0, 255, 255}, {255, 0, 0, 0}, {0, 0, 255, 255}},
                          Case{clear, {10, 20, 30, 128}, {10, 20, 30, 128}},
                          Case{{0, 0, 255, 255}, {255, 0, 0, 128}, {128, 0, 127, 255}}}) {
        const NSImageRef copied = filled(1, 1, c.below);
        copied->lockFocus();
        filled(1, 1, c.above)->compositeToPoint_operation({0, 0}, NSCompositeCopy);
        copied->unlockFocus();
        EXPECT_EQ(pixelOf(*copied, 0, 0), c.above);
        const NSImageRef blended = filled(1, 1, c.below);
        blended->lockFocus();
        filled(1, 1, c.above)->compositeToPoint_operation({0, 0}, NSCompositeSourceOver);
        blended->unlockFocus();
        EXPECT_EQ(pixelOf(*blended, 0, 0), c.over);
    }
}

TEST(NSImageTest, FinerPixelsAreDrawnWhereOneOfTheTwoHasThem) {
    const HeadlessHost host;
    const Pixel red{255, 0, 0, 255};
    const Pixel blue{0, 0, 255, 255};
    const NSImageRef target = filled(2, 2, blue);
    const NSImageRef point = filled(1, 1, red);
    // Only the size with twice the pixels is taken.
    point->addRepresentation(encodePng(filled(3, 2, red)->bitmap()));
    EXPECT_EQ(point->doubledBitmap(), nullptr);
    target->lockFocus();
    point->compositeToPoint_operation({1, 0}, NSCompositeSourceOver);
    EXPECT_EQ(target->doubledBitmap(), nullptr);
    const Pixel green{0, 255, 0, 255};
    point->addRepresentation(encodePng(filled(2, 2, green)->bitmap()));
    point->compositeToPoint_operation({0, 1}, NSCompositeSourceOver);
    filled(1, 1, clear)->compositeToPoint_operation({0, 0}, NSCompositeCopy);
    target->unlockFocus();
    EXPECT_EQ(pixelOf(*target, 0, 0), red);
    ASSERT_NE(target->doubledBitmap(), nullptr);
    const NSImage fine(*target->doubledBitmap());
    ASSERT_EQ(fine.size(), (NSSize{4, 4}));
    const std::array<std::array<Pixel, 2>, 2> quarters{{{green, blue}, {clear, red}}};
    for (int y = 0; y < 4; ++y) {
        for (int x = 0; x < 4; ++x) {
            EXPECT_EQ(
                pixelOf(fine, x, y),
                quarters.at(static_cast<std::size_t>(y / 2)).at(static_cast<std::size_t>(x / 2)))
                << x << y;
        }
    }
}

TEST(NSImageTest, WithoutAFocusNothingIsDrawn) {
    const HeadlessHost host;
    const NSImageRef outer = NSImage::initWithSize({1, 1});
    const NSImageRef inner = NSImage::initWithSize({1, 1});
    const NSImageRef red = filled(1, 1, {255, 0, 0, 255});
    red->compositeToPoint_operation({0, 0}, NSCompositeCopy);
    outer->lockFocus();
    inner->lockFocus();
    red->compositeToPoint_operation({0, 0}, NSCompositeCopy);
    inner->unlockFocus();
    EXPECT_EQ(pixelOf(*outer, 0, 0), clear) << "the inner focus had the drawing";
    EXPECT_EQ(pixelOf(*inner, 0, 0), (Pixel{255, 0, 0, 255}));
    outer->unlockFocus();
}

TEST(NSImageTest, OnlyAPictureFilesBytesMakeAnImage) {
    const HeadlessHost host;
    const NSImageRef image = NSImage::initWithData(encodePng(filled(3, 2, {4, 5, 6, 7})->bitmap()));
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->size(), (NSSize{3, 2}));
    EXPECT_EQ(pixelOf(*image, 2, 1), (Pixel{4, 5, 6, 7}));
    EXPECT_EQ(NSImage::initWithData("no picture"), nullptr);
}

}  // namespace
}  // namespace velmora
