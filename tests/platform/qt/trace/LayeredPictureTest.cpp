#include "platform/qt/trace/LayeredPicture.h"

#include <gtest/gtest.h>

#include <QPainter>
#include <cstdlib>

#include "platform/qt/base/QtDrawing.h"

namespace velmora {
namespace {

const StrokeStyle outer{4, NSRoundLineCapStyle, NSRoundLineJoinStyle, {3, 3}, 0};
const StrokeStyle inner{2, NSRoundLineCapStyle, NSRoundLineJoinStyle, {3, 3}, 0};
const NSColor red{1, 0, 0, 1};
const NSColor white = NSColor::whiteColor();
const QRect everything(-300, -300, 900, 900);

NSBezierPath pathOf(const std::vector<NSPoint>& points) {
    NSBezierPath path;
    path.moveToPoint(points.front());
    for (std::size_t i = 1; i < points.size(); ++i) path.lineToPoint(points[i]);
    return path;
}

StrokeOperation strokeOf(const NSBezierPath& path, const StrokeStyle& style, NSColor color) {
    return {path.elements(), style, color, {}};
}

QImage imageOf(const LayeredPicture& picture) {
    QImage image(everything.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.translate(-everything.topLeft());
    picture.paint(painter, everything);
    return image;
}

/// How many pixels differ by more than that in a channel.
int difference(const QImage& a, const QImage& b, int tolerance) {
    int count = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            const auto apart = [&](int i, int j) { return std::abs(i - j) > tolerance; };
            count += apart(qRed(p), qRed(q)) || apart(qGreen(p), qGreen(q)) ||
                     apart(qBlue(p), qBlue(q)) || apart(qAlpha(p), qAlpha(q));
        }
    }
    return count;
}

int covered(const QImage& image) {
    QImage nothing = image;
    nothing.fill(Qt::transparent);
    return difference(image, nothing, 0);
}

/// Goes down, left over zero, turns back and creeps.
const std::vector<NSPoint> winding{{10, 10},     {11, 14},    {90.5F, 120},  {-40, 131},
                                   {-150, -60},  {-150, -61}, {-149, -62},   {-148.25F, -62},
                                   {-148, -62},  {200, 250},  {200, 250.5F}, {260, 100},
                                   {100, 103.3F}};

struct Look {
    const char* name;
    StrokeStyle style;
    double scale;
    Edges edges;
};
const std::vector<Look> looks{
    {"the trace", outer, 1, Edges::smooth},
    {"its core on a scaled display", inner, 1.5, Edges::smooth},
    {"a shape", outer, 2, Edges::sharp},
    {"later in the dashes",
     {4, NSRoundLineCapStyle, NSRoundLineJoinStyle, {5, 9}, 7.5F},
     1,
     Edges::smooth},
    {"solid", {3, NSRoundLineCapStyle, NSRoundLineJoinStyle, {}, 0}, 1, Edges::smooth},
    {"flat ends", {4, NSButtLineCapStyle, NSMiterLineJoinStyle, {8, 4}, 0}, 1, Edges::smooth},
};

TEST(LayeredPictureTest, APathThatGrowsWhileItsWindowMovesLooksAsIfDrawnAtOnce) {
    for (const Look& look : looks) {
        LayeredPicture growing(look.edges);
        NSBezierPath path;
        path.moveToPoint(winding.front());
        for (std::size_t i = 1; i < winding.size(); ++i) {
            path.lineToPoint(winding[i]);
            const NSPoint origin = path.bounds().origin;
            StrokeOperation stroke = strokeOf(path, look.style, red);
            stroke.transform.translateXBy_yBy(-origin.x, -origin.y);
            QTransform toPlane(look.scale, 0, 0, -look.scale, 0, 200);
            toPlane.translate(static_cast<double>(origin.x), static_cast<double>(origin.y));
            growing.show({stroke}, toPlane);
        }
        LayeredPicture whole(look.edges);
        const QTransform toPlane(look.scale, 0, 0, -look.scale, 0, 200);
        whole.show({strokeOf(path, look.style, red)}, toPlane);
        EXPECT_EQ(difference(imageOf(growing), imageOf(whole), 2), 0) << look.name;

        // What the toolkit draws of such a line; its smooth edges may be a little different.
        QImage reference(everything.size(), QImage::Format_ARGB32_Premultiplied);
        reference.fill(Qt::transparent);
        QPainter painter(&reference);
        painter.setRenderHint(QPainter::Antialiasing, look.edges == Edges::smooth);
        painter.translate(-everything.topLeft());
        painter.setTransform(toPlane, true);
        painter.strokePath(qtPath(path.elements()), qtPen(look.style, red));
        painter.end();
        EXPECT_GT(covered(reference), 2000) << look.name;
        EXPECT_LT(difference(imageOf(whole), reference, 100), covered(reference) / 50) << look.name;
    }
}

TEST(LayeredPictureTest, OnlyWhatIsNewChanges) {
    LayeredPicture picture(Edges::smooth);
    NSBezierPath path = pathOf({{0, 0}, {200, 0}});
    const auto show = [&](NSColor color) {
        return picture.show({strokeOf(path, outer, color), strokeOf(path, inner, white)}, {});
    };
    EXPECT_TRUE(show(red).onlyAdds);
    EXPECT_TRUE(show(red).area.isEmpty());

    path.lineToPoint({210, 10});
    LayerChange change = show(red);
    EXPECT_TRUE(change.onlyAdds);
    EXPECT_TRUE(QRect(195, -6, 21, 22).contains(change.area));
    EXPECT_TRUE(change.area.contains(QRect(200, 0, 10, 10)));

    for (const bool anew : {false, true}) {
        if (anew) path = pathOf({{50, 50}, {60, 60}});
        change = show(anew ? red : NSColor{0, 1, 0, 1});
        EXPECT_FALSE(change.onlyAdds);
        EXPECT_TRUE(change.area.contains(QRect(0, 0, 200, 1)));
    }
    EXPECT_FALSE(picture.bounds().contains(0, 0));
    LayeredPicture fresh(Edges::smooth);
    fresh.show({strokeOf(path, outer, red), strokeOf(path, inner, white)}, {});
    EXPECT_EQ(difference(imageOf(picture), imageOf(fresh), 0), 0);
}

TEST(LayeredPictureTest, FillsReplaceWhatIsBelowThem) {
    const NSBezierPath path = pathOf({{10, 10}, {100, 10}});
    const StrokeOperation line =
        strokeOf(path, {10, NSRoundLineCapStyle, NSRoundLineJoinStyle, {}, 0}, red);
    const NSColor clear = NSColor::clearColor();
    const NSColor glass{0, 0, 1, 0.5F};
    const auto fill = [](NSRect rect, NSColor color) { return FillOperation{rect, color, {}}; };
    const NSRect middle{{40, 0}, {20, 20}};
    struct Row {
        const char* name;
        DisplayList list;
        QRgb inMiddle;
        QRgb onLine;
        QRgb beside;
    };
    const QRgb redPixel = qRgba(255, 0, 0, 255);
    const QRgb glassPixel = qRgba(0, 0, 128, 128);
    const std::vector<Row> rows{
        {"clearing first", {fill({{-50, -50}, {300, 300}}, clear), line}, redPixel, redPixel, 0},
        {"clearing later", {line, fill(middle, clear)}, 0, redPixel, 0},
        {"a colour below", {fill(middle, white), line}, redPixel, redPixel, 0},
        {"glass on top", {line, fill(middle, glass)}, glassPixel, redPixel, 0},
        {"glass elsewhere",
         {line, fill({{150, 0}, {20, 20}}, glass)},
         redPixel,
         redPixel,
         glassPixel},
    };
    // Each follows the others in one picture, and leaves nothing of them.
    LayeredPicture picture(Edges::sharp);
    for (const Row& row : rows) {
        picture.show(row.list, {});
        QImage image(200, 20, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        picture.paint(painter, image.rect());
        painter.end();
        const auto at = [&](int x) {
            return reinterpret_cast<const QRgb*>(image.constScanLine(10))[x];
        };
        EXPECT_EQ(at(50), row.inMiddle) << row.name;
        EXPECT_EQ(at(20), row.onLine) << row.name;
        EXPECT_EQ(at(160), row.beside) << row.name;
    }
}

TEST(LayeredPictureTest, RunsAreThePixelsThatAreSeen) {
    LayeredPicture picture(Edges::sharp);
    const NSBezierPath path = pathOf(winding);
    picture.show({strokeOf(path, outer, red), strokeOf(path, inner, white)}, {});
    QImage runs(everything.size(), QImage::Format_ARGB32_Premultiplied);
    runs.fill(Qt::transparent);
    QPainter painter(&runs);
    for (const QRect& run : picture.runs(everything)) {
        painter.fillRect(run.translated(-everything.topLeft()), Qt::white);
    }
    painter.end();
    const QImage shown = imageOf(picture);
    EXPECT_EQ(difference(runs.convertToFormat(QImage::Format_Alpha8),
                         shown.convertToFormat(QImage::Format_Alpha8), 0),
              0);
    EXPECT_GT(covered(shown), 2000);
}

TEST(DashedLineTest, DashesRunOnFromPointToPoint) {
    struct Row {
        const char* name;
        std::vector<float> dash;
        float phase;
        std::vector<double> ways;
        std::vector<std::pair<double, double>> drawn;
    };
    const std::vector<Row> rows{
        {"one way", {3, 3}, 0, {10}, {{0, 3}, {6, 9}}},
        {"cut by points", {3, 3}, 0, {1, 4, 5}, {{0, 1}, {1, 3}, {6, 9}}},
        {"a point at a dash's end", {3, 3}, 0, {3, 3, 3}, {{0, 3}, {6, 9}}},
        {"an odd count", {2, 1, 4}, 0, {14}, {{0, 2}, {3, 7}, {9, 10}}},
        {"a phase of more than a turn", {3, 3}, 7, {6}, {{0, 2}, {5, 6}}},
        {"a phase below zero", {3, 3}, -1, {6}, {{1, 4}}},
        {"no length at all", {0, 0}, 0, {5}, {{0, 5}}},
        {"a length below zero", {3, -3}, 0, {5}, {{0, 5}}},
        {"solid and long", {}, 0, {100}, {{0, 64}, {64, 100}}},
    };
    for (const Row& row : rows) {
        StrokeStyle style;
        style.dash = row.dash;
        style.dashPhase = row.phase;
        DashedLine line(style);
        line.moveTo({0, 5});
        std::vector<std::pair<double, double>> drawn;
        double at = 0;
        for (const double way : row.ways) {
            for (const QLineF& piece : line.lineTo({at += way, 5})) {
                drawn.emplace_back(piece.x1(), piece.x2());
            }
        }
        ASSERT_EQ(drawn.size(), row.drawn.size()) << row.name;
        for (std::size_t i = 0; i < drawn.size(); ++i) {
            EXPECT_NEAR(drawn[i].first, row.drawn[i].first, 1e-9) << row.name;
            EXPECT_NEAR(drawn[i].second, row.drawn[i].second, 1e-9) << row.name;
        }
    }
}

}  // namespace
}  // namespace velmora
