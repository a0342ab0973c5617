#pragma once

#include <QPen>
#include <QTransform>

#include "platform/appkit/drawing/NSGraphicsContext.h"
#include "platform/qt/trace/DashedLine.h"
#include "platform/qt/trace/TiledImage.h"

namespace velmora {

enum class Edges { sharp, smooth };

/// What an operation changed: where, and whether pixels were only covered that were not before.
struct LayerChange {
    QRect area;
    bool onlyAdds = true;
};

/// The picture of one stroke operation, without its transparency. A path that has grown costs what
/// it has grown by, where the line's ends and joins are round; otherwise it is drawn anew.
class StrokeLayer {
public:
    explicit StrokeLayer(Edges edges) : edges_(edges) {}

    /// `toPicture` leads from the path's coordinates to pixels of the picture.
    LayerChange draw(const StrokeOperation& stroke, const QTransform& toPicture);
    void paint(QPainter& painter, const QRect& area) const;
    /// Everything that is drawn lies in it.
    QRect bounds() const { return bounds_; }

private:
    bool goesOn(const StrokeOperation& stroke, const QTransform& toPicture) const;
    bool isRound() const;
    /// What the next element of the path adds. It is counted as drawn by the caller.
    std::vector<QLineF> nextPieces();
    /// The pen of a dash.
    QPen solidPen() const;
    QRect drawWhole();
    QRect drawRest();
    QRect drawPieces(const std::vector<QLineF>& pieces);
    /// The pixels that a line of the stroke's width may touch.
    QRect touched(const QRectF& line) const;

    Edges edges_;
    StrokeOperation stroke_;
    QTransform toPicture_;
    /// How many of the path's elements are drawn.
    std::size_t drawn_ = 0;
    DashedLine line_;
    TiledImage image_;
    QRect bounds_;
};

}  // namespace velmora
