#include "replay/Canvas.h"

#include <gtest/gtest.h>

#include <array>

namespace velmora {
namespace {

using Pixel = std::array<int, 4>;

constexpr NSColor red{1, 0, 0, 1};
constexpr NSColor blue{0, 0, 1, 1};

/// The pixel there, counted from the upper left corner.
Pixel pixelOf(const Canvas& canvas, int x, int y) {
    const Bitmap bitmap = canvas.bitmap();
    const auto* at = &bitmap.pixels[static_cast<std::size_t>((y * bitmap.width + x) * 4)];
    return {at[0], at[1], at[2], at[3]};
}

StrokeOperation line(NSPoint from, NSPoint to, const StrokeStyle& style) {
    NSBezierPath path;
    path.moveToPoint(from);
    path.lineToPoint(to);
    return {path.elements(), style, red, {}};
}

TEST(CanvasTest, PointsGrowUpwardAndHaveSoManyPixels) {
    Canvas canvas({10, 5}, 2);
    canvas.fill({{0, 0}, {2, 1}}, red);
    EXPECT_EQ(canvas.bitmap().width, 20);
    EXPECT_EQ(canvas.bitmap().height, 10);
    EXPECT_EQ(pixelOf(canvas, 3, 8), (Pixel{255, 0, 0, 255}));
    EXPECT_EQ(pixelOf(canvas, 3, 7), (Pixel{0, 0, 0, 0}));
    EXPECT_EQ(pixelOf(canvas, 4, 8), (Pixel{0, 0, 0, 0}));
}

TEST(CanvasTest, WhatIsClearedUncoversWhatLiesBelow) {
    Canvas canvas({20, 20});
    canvas.fill({{0, 0}, {20, 20}}, blue);
    const DisplayList list{FillOperation{{{0, 0}, {10, 10}}, red, {}},
                           FillOperation{{{0, 0}, {5, 10}}, NSColor::clearColor(), {}}};
    canvas.play(list, {{4, 4}, {8, 10}}, 0.5);
    EXPECT_EQ(pixelOf(canvas, 5, 10), (Pixel{0, 0, 255, 255})) << "cleared";
    EXPECT_NEAR(pixelOf(canvas, 10, 10)[0], 128, 1) << "half red";
    EXPECT_EQ(pixelOf(canvas, 13, 10), (Pixel{0, 0, 255, 255})) << "beyond the frame";
}

TEST(CanvasTest, StrokesHaveTheirWidthCapsDashesAndTransformation) {
    struct Row {
        const char* name;
        StrokeOperation stroke;
        NSPoint inked;
        NSPoint blank;
    };
    const StrokeStyle plain{4, NSButtLineCapStyle, NSMiterLineJoinStyle, {}, 0};
    StrokeStyle round = plain;
    round.cap = NSRoundLineCapStyle;
    StrokeStyle square = plain;
    square.cap = NSSquareLineCapStyle;
    StrokeStyle dashed = plain;
    dashed.dash = {5, 5};
    dashed.dashPhase = 2;
    StrokeOperation moved = line({10, 20}, {20, 20}, plain);
    moved.transform.translateXBy_yBy(0, 10);
    // Rows are counted from the top of 40.
    for (const Row& row : {Row{"butt", line({10, 20}, {20, 20}, plain), {10, 18}, {9, 19}},
                           Row{"width", line({10, 20}, {20, 20}, plain), {15, 21}, {15, 22}},
                           Row{"round", line({10, 20}, {20, 20}, round), {8, 19}, {7, 19}},
                           Row{"square", line({10, 20}, {20, 20}, square), {8, 18}, {7, 19}},
                           Row{"dot", line({20, 20}, {20, 20}, round), {19, 19}, {17, 19}},
                           Row{"dash", line({10, 20}, {30, 20}, dashed), {12, 19}, {13, 19}},
                           Row{"moved", moved, {15, 9}, {15, 19}}}) {
        Canvas canvas({40, 40});
        canvas.play({row.stroke}, {{0, 0}, {40, 40}});
        const auto alpha = [&](NSPoint at) { return pixelOf(canvas, int(at.x), int(at.y))[3]; };
        EXPECT_GT(alpha(row.inked), 100) << row.name;
        EXPECT_EQ(alpha(row.blank), 0) << row.name;
    }
}

TEST(CanvasTest, APictureIsBlendedWithWhatIsThere) {
    Canvas canvas({4, 4});
    canvas.fill({{0, 0}, {4, 4}}, blue);
    canvas.draw({1, 2, {255, 0, 0, 128, 9, 8, 7, 255}}, {1, 3});
    EXPECT_EQ(pixelOf(canvas, 1, 1), (Pixel{128, 0, 127, 255}));
    EXPECT_EQ(pixelOf(canvas, 1, 2), (Pixel{9, 8, 7, 255}));
    EXPECT_EQ(pixelOf(canvas, 1, 3), (Pixel{0, 0, 255, 255}));
}

}  // namespace
}  // namespace velmora
