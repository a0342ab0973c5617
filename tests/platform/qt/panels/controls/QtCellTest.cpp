// A cell looks the same on both desktops. Qt's pictures are drawn in memory, without a display.

#include "platform/qt/panels/controls/QtCell.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <algorithm>
#include <cstdlib>
#include <vector>

#include "gestures/VelmoraGestureCell.h"
#include "replay/Canvas.h"

namespace velmora {
namespace {

/// How much of each pixel is covered, 0 to 255, rows from the top.
struct Ink {
    int width = 0;
    int height = 0;
    std::vector<int> cover;

    int at(int x, int y) const {
        const bool inside = x >= 0 && y >= 0 && x < width && y < height;
        return inside ? cover[static_cast<std::size_t>(y * width + x)] : 0;
    }
};

Ink inkOf(const QImage& image) {
    Ink ink{image.width(), image.height(), {}};
    for (int y = 0; y < ink.height; ++y) {
        for (int x = 0; x < ink.width; ++x) ink.cover.push_back(qAlpha(image.pixel(x, y)));
    }
    return ink;
}

Ink inkOf(const Bitmap& bitmap) {
    Ink ink{bitmap.width, bitmap.height, {}};
    for (std::size_t i = 3; i < bitmap.pixels.size(); i += 4) ink.cover.push_back(bitmap.pixels[i]);
    return ink;
}

/// In a place a little off the corner of a larger picture, as a cell of a table is.
constexpr float border = 5;

Ink drawnByQt(NSCell& cell, NSSize size, YAxis axis, double scale) {
    QImage image(int((size.width + 2 * border) * scale), int((size.height + 2 * border) * scale),
                 QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    drawCell(cell, QRectF(border, border, size.width, size.height), axis, painter);
    painter.end();
    return inkOf(image);
}

DisplayList recorded(NSCell& cell, NSSize size, YAxis axis) {
    return NSGraphicsContext::record([&] {
        NSAffineTransform turned;
        if (axis == YAxis::down) {
            turned.translateXBy_yBy(0, size.height);
            turned.scaleXBy_yBy(1, -1);
        }
        turned.set();
        cell.drawInteriorWithFrame_inView({{}, size}, nullptr);
    });
}

Ink drawnHeadless(NSCell& cell, NSSize size, YAxis axis, double scale) {
    Canvas canvas({size.width + 2 * border, size.height + 2 * border}, scale);
    canvas.play(recorded(cell, size, axis), {{border, border}, size});
    return inkOf(canvas.bitmap());
}

/// What must be inked, in points of the picture, y downward.
QRectF reachOf(NSCell& cell, NSSize size, YAxis axis) {
    QRectF reach;
    for (const auto& operation : recorded(cell, size, axis)) {
        const auto& stroke = std::get<StrokeOperation>(operation);
        for (const PathElement& element : stroke.path) {
            const NSPoint point = stroke.transform.transformPoint(element.point);
            const double half = double(stroke.style.width) / 2;
            const QPointF middle(double(border + point.x), double(border + size.height - point.y));
            reach |= QRectF(middle - QPointF(half, half), QSizeF(2 * half, 2 * half));
        }
    }
    return reach;
}

QRectF boxOf(const Ink& ink, double scale) {
    QRect box;
    for (int y = 0; y < ink.height; ++y) {
        for (int x = 0; x < ink.width; ++x) {
            if (ink.at(x, y) > 20) box |= QRect(x, y, 1, 1);
        }
    }
    return {box.x() / scale, box.y() / scale, box.width() / scale, box.height() / scale};
}

double distance(const QRectF& a, const QRectF& b) {
    return std::max({std::abs(a.left() - b.left()), std::abs(a.right() - b.right()),
                     std::abs(a.top() - b.top()), std::abs(a.bottom() - b.bottom())});
}

TEST(QtCellTest, AGestureShapeIsTheSameAsOnTheHeadlessDesktopAndWhole) {
    struct Place {
        bool big;
        NSSize size;
        YAxis axis;
    };
    for (const Place& place : {Place{false, {32, 32}, YAxis::down}, {true, {120, 90}, YAxis::up}}) {
        for (const double scale : {1.0, 1.5, 2.0}) {
            for (const char* string : {"u", "l", "lr", "rdlu", "ululurrd", "dudududu", "10,20 -5,7",
                                       "?", "urdlurdlurdlurdlurdlurdlurdlu"}) {
                SCOPED_TRACE(std::string(string) + (place.big ? ", big, " : ", small, ") +
                             std::to_string(scale));
                VelmoraGestureCell cell;
                cell.initBig(place.big);
                cell.setStringValue(string);
                const Ink qt = drawnByQt(cell, place.size, place.axis, scale);
                const Ink headless = drawnHeadless(cell, place.size, place.axis, scale);
                ASSERT_EQ(qt.cover.size(), headless.cover.size());

                // Whole: the ink reaches as far as the strokes do, and these lie in the cell.
                const QRectF reach = reachOf(cell, place.size, place.axis);
                const QRectF frame(border, border, place.size.width, place.size.height);
                EXPECT_TRUE(frame.adjusted(-0.01, -0.01, 0.01, 0.01).contains(reach));
                EXPECT_LE(distance(boxOf(qt, scale), reach), 1);
                EXPECT_LE(distance(boxOf(headless, scale), reach), 1);

                // Only edges differ, by how the two cover a pixel in part.
                long difference = 0;
                long inked = 0;
                int worst = 0;
                for (std::size_t i = 0; i < qt.cover.size(); ++i) {
                    const int apart = std::abs(qt.cover[i] - headless.cover[i]);
                    worst = std::max(worst, apart);
                    difference += apart;
                    inked += headless.cover[i];
                }
                EXPECT_LE(worst, 140);
                EXPECT_LE(difference * 20, inked);
                EXPECT_GT(inked, 0);
            }
        }
    }
}

TEST(QtCellTest, TheDotStandsWhereTheStrokeBegan) {
    // Right and up: from the lower left, whichever way the view counts.
    for (const bool big : {false, true}) {
        VelmoraGestureCell cell;
        cell.initBig(big);
        cell.setStringValue("ru");
        const NSSize size = big ? NSSize{64, 64} : NSSize{32, 32};
        const int margin = int(border) + (big ? 8 : 2);
        const int far = margin + (big ? 48 : 28);
        const int dot = big ? 3 : 1;
        const Ink ink = drawnByQt(cell, size, big ? YAxis::up : YAxis::down, 1);
        EXPECT_GT(ink.at(margin - dot, far - 1), 200) << "the dot is wider than the line";
        EXPECT_GT(ink.at(margin, far + dot - 1), 200);
        EXPECT_GT(ink.at(far, margin), 200) << "the end";
        EXPECT_EQ(ink.at(margin + 2 * dot + 2, margin + 2 * dot + 2), 0) << "the other corner";
    }
}

}  // namespace
}  // namespace velmora
