#include "platform/qt/trace/StrokeLayer.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "platform/qt/base/QtDrawing.h"

namespace velmora {

namespace {

/// What a shift of the window may leave of a pixel, by its rounding.
constexpr double sameTransform = 1.0 / 64;

/// The largest rectangle, in pixels, that is drawn aside at once.
constexpr int largestScratch = 128 * 128;

bool isSame(const QTransform& a, const QTransform& b) {
    return a.m11() == b.m11() && a.m12() == b.m12() && a.m21() == b.m21() && a.m22() == b.m22() &&
           std::abs(a.dx() - b.dx()) < sameTransform && std::abs(a.dy() - b.dy()) < sameTransform;
}

/// The rectangle of any line, also one that goes up or to the left.
QRectF rectAround(const QLineF& line) {
    return QRectF(line.p1(), QSizeF(line.dx(), line.dy())).normalized();
}

}  // namespace

bool StrokeLayer::isRound() const {
    return stroke_.style.cap == NSRoundLineCapStyle && stroke_.style.join == NSRoundLineJoinStyle;
}

bool StrokeLayer::goesOn(const StrokeOperation& stroke, const QTransform& toPicture) const {
    // Elements that stand there never change.
    return stroke.path.elements == stroke_.path.elements && stroke.path.count >= drawn_ &&
           stroke.style == stroke_.style && stroke.color == stroke_.color &&
           isSame(toPicture, toPicture_);
}

LayerChange StrokeLayer::draw(const StrokeOperation& stroke, const QTransform& toPicture) {
    const QRect before = bounds_;
    const bool extends = goesOn(stroke, toPicture);
    stroke_ = stroke;
    if (extends && stroke.path.count == drawn_) return {};
    if (extends && isRound()) return {drawRest(), true};

    toPicture_ = toPicture;
    image_.clear();
    bounds_ = QRect();
    drawn_ = 0;
    line_ = DashedLine(stroke.style);
    const QRect now = isRound() ? drawRest() : drawWhole();
    return {before | now, before.isEmpty()};
}

QRect StrokeLayer::touched(const QRectF& line) const {
    const double half = static_cast<double>(stroke_.style.width) / 2;
    // Flat and pointed joins reach further than the line's width.
    const double reach = isRound() ? half : half * QPen().miterLimit() * 2;
    const QRectF pixels = toPicture_.mapRect(line.adjusted(-reach, -reach, reach, reach));
    return pixels.toAlignedRect().adjusted(-1, -1, 1, 1);
}

QRect StrokeLayer::drawWhole() {
    // The toolkit's own dashes are not the same in every square of the picture.
    QPainterPath dashes;
    for (; drawn_ < stroke_.path.count; ++drawn_) {
        for (const QLineF& piece : nextPieces()) {
            if (dashes.isEmpty() || dashes.currentPosition() != piece.p1()) {
                dashes.moveTo(piece.p1());
            }
            dashes.lineTo(piece.p2());
        }
    }
    bounds_ = dashes.isEmpty() ? QRect() : touched(dashes.boundingRect());
    image_.draw(bounds_, [&](QPainter& painter) {
        painter.setRenderHint(QPainter::Antialiasing, edges_ == Edges::smooth);
        painter.setTransform(toPicture_, true);
        painter.strokePath(dashes, solidPen());
    });
    return bounds_;
}

std::vector<QLineF> StrokeLayer::nextPieces() {
    const PathElement& element = stroke_.path.begin()[drawn_];
    const QPointF point(static_cast<double>(element.point.x), static_cast<double>(element.point.y));
    if (element.kind == NSLineToBezierPathElement && drawn_ != 0) return line_.lineTo(point);
    line_.moveTo(point);
    return {};
}

QPen StrokeLayer::solidPen() const {
    StrokeStyle solid = stroke_.style;
    solid.dash.clear();
    NSColor opaque = stroke_.color;
    opaque.alpha = 1;
    return qtPen(solid, opaque);
}

QRect StrokeLayer::drawRest() {
    QRect changed;
    for (; drawn_ < stroke_.path.count; ++drawn_) changed |= drawPieces(nextPieces());
    bounds_ |= changed;
    return changed;
}

QRect StrokeLayer::drawPieces(const std::vector<QLineF>& pieces) {
    QRect changed;
    for (auto piece = pieces.begin(); piece != pieces.end();) {
        // As many as a small rectangle holds; those that follow each other are near each other.
        const auto first = piece;
        QRect area;
        for (; piece != pieces.end(); ++piece) {
            const QRect more = area | touched(rectAround(*piece));
            if (!area.isNull() && more.width() * more.height() > largestScratch) break;
            area = more;
        }
        QImage scratch(area.size(), QImage::Format_ARGB32_Premultiplied);
        scratch.fill(Qt::transparent);
        QPainter painter(&scratch);
        painter.setRenderHint(QPainter::Antialiasing, edges_ == Edges::smooth);
        painter.translate(-area.topLeft());
        painter.setTransform(toPicture_, true);
        painter.setPen(solidPen());
        painter.drawLines(&*first, static_cast<int>(piece - first));
        painter.end();
        // Pieces meet in their round ends, where smooth edges would be drawn twice.
        image_.unite(area.topLeft(), scratch);
        changed |= area;
    }
    return changed;
}

void StrokeLayer::paint(QPainter& painter, const QRect& area) const {
    const double opacity = painter.opacity();
    painter.setOpacity(opacity * static_cast<double>(stroke_.color.alpha));
    image_.paint(painter, area);
    painter.setOpacity(opacity);
}

}  // namespace velmora
