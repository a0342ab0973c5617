#include "gestures/VelmoraGestureCell.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "platform/appkit/drawing/NSGraphicsContext.h"

namespace velmora {
namespace {

std::vector<NSPoint> pointsOf(const PathElements& path) {
    std::vector<NSPoint> points;
    for (const PathElement& element : path) points.push_back(element.point);
    return points;
}

bool areNear(const std::vector<NSPoint>& a, const std::vector<NSPoint>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](NSPoint p, NSPoint q) {
        return std::abs(p.x - q.x) < 0.001F && std::abs(p.y - q.y) < 0.001F;
    });
}

TEST(VelmoraGestureCellTest, AStringBecomesAPathThatMeetsNoneOfItsPointsAgain) {
    struct Row {
        const char* string;
        std::vector<NSPoint> points;
    };
    const std::vector<Row> rows{
        {"u", {{0, 0}, {0, 10}}},
        {"lr", {{0, 0}, {-10, 0}, {-2, -2}}},
        {"rl", {{0, 0}, {10, 0}, {2, -2}}},
        // Each time further, to where it went last on each axis.
        {"dudu", {{0, 0}, {0, -10}, {2, -2}, {2, -12}, {4, -4}}},
        {"rlu", {{0, 0}, {10, 0}, {2, 2}, {2, 12}}},
        {"l?r", {{0, 0}, {-10, 0}, {-2, -2}}},
        {"?", {{0, 0}}},
        {"10,20 -5,7", {{0, 0}, {10, 20}, {-5, 7}}},
        {"1-2", {{0, 0}, {1, -2}}},
        {"3", {{0, 0}, {3, 0}}},
        {"2000000000,-2000000001", {{0, 0}, {2e9F, -2000000001.0F}}},
        {"99999999999999999999 1", {{0, 0}, {2147483647.0F, 1}}},
    };
    for (const Row& row : rows) {
        VelmoraGestureCell cell;
        cell.setStringValue(row.string);
        EXPECT_EQ(pointsOf(cell.preprocessGesture()->elements()), row.points) << row.string;
    }
    EXPECT_EQ(VelmoraGestureCell().preprocessGesture(), nullptr);
}

TEST(VelmoraGestureCellTest, APathMeetsNoneOfItsPointsAgain) {
    constexpr std::size_t length = 1000;
    std::minstd_rand random;
    std::string anywhere;
    while (anywhere.size() < length) anywhere += "udlr"[random() / 7 % 4];
    const auto repeated = [](std::string_view piece) {
        std::string letters;
        while (letters.size() < length) letters += piece;
        return letters;
    };
    for (const std::string& letters :
         {anywhere, repeated("r"), repeated("lr"), repeated("rdlu"), repeated("rdrulllddu")}) {
        SCOPED_TRACE(letters.substr(0, 10));
        VelmoraGestureCell cell;
        // Each point is where a search through all before it puts it.
        cell.setStringValue(letters);
        const NSBezierPathRef path = cell.preprocessGesture();
        NSBezierPath before;
        before.moveToPoint({0, 0});
        for (int i = 1; i < path->elementCount(); ++i) {
            NSPoint point;
            path->elementAtIndex_associatedPoints(i, &point);
            ASSERT_FALSE(VelmoraGestureCell::path_containsPoint(before, point)) << i;
            before.lineToPoint(point);
        }
    }
}

TEST(VelmoraGestureCellTest, TheShapeFillsItsPlaceAndADotMarksTheStart) {
    struct Row {
        const char* string;
        bool big;
        NSRect frame;
        std::vector<NSPoint> shape;
    };
    const std::vector<Row> rows{
        // 28 by 28 within a margin of 2, turned over: y grows downward there.
        {"u", false, {{100, 50}, {60, 40}}, {{116, 80}, {116, 52}}},
        {"ru", false, {{0, 0}, {32, 32}}, {{2, 30}, {30, 30}, {30, 2}}},
        // 44 by 44 in the middle of 100 by 60.
        {"ru",
         true,
         {{10, 20}, {100.5F, 60.5F}},
         {{38.25F, 28.25F}, {82.25F, 28.25F}, {82.25F, 72.25F}}},
        {"lr", true, {{0, 0}, {26, 26}}, {{18, 14}, {8, 14}, {16, 12}}},
        {"?", false, {{0, 0}, {32, 32}}, {{16, 16}}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.string);
        VelmoraGestureCell cell;
        cell.initBig(row.big);
        cell.setStringValue(row.string);
        const DisplayList drawn = NSGraphicsContext::record(
            [&] { cell.drawInteriorWithFrame_inView(row.frame, nullptr); });
        const auto& dot = std::get<StrokeOperation>(drawn.back());
        EXPECT_TRUE(areNear(pointsOf(dot.path), {row.shape[0], row.shape[0]}));
        EXPECT_EQ(dot.style.cap, NSRoundLineCapStyle);
        EXPECT_EQ(dot.style.width, row.big ? 8 : 4);
        // A path of no extent draws the dot alone.
        ASSERT_EQ(drawn.size(), row.shape.size() > 1 ? 2U : 1U);
        if (row.shape.size() == 1) continue;
        const auto& shape = std::get<StrokeOperation>(drawn.front());
        EXPECT_TRUE(areNear(pointsOf(shape.path), row.shape))
            << ::testing::PrintToString(shape.path.count);
        EXPECT_EQ(shape.style.width, row.big ? 4 : 2);
    }
    VelmoraGestureCell empty;
    EXPECT_TRUE(NSGraphicsContext::record([&] {
                    empty.drawInteriorWithFrame_inView({{0, 0}, {32, 32}}, nullptr);
                }).empty());
    EXPECT_EQ(empty.cellSize(), (NSSize{32, 32}));
}

}  // namespace
}  // namespace velmora
