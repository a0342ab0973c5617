#include "platform/qt/QtDrawing.h"

#include <QPainter>
#include <QPainterPath>

namespace velmora {

namespace {

QTransform qtTransform(const NSAffineTransform& transform) {
    return {static_cast<double>(transform.m11), static_cast<double>(transform.m12),
            static_cast<double>(transform.m21), static_cast<double>(transform.m22),
            static_cast<double>(transform.tX),  static_cast<double>(transform.tY)};
}

QColor qtColor(NSColor color) {
    return QColor::fromRgbF(color.red, color.green, color.blue, color.alpha);
}

Qt::PenCapStyle qtCap(NSLineCapStyle cap) {
    switch (cap) {
        case NSRoundLineCapStyle: return Qt::RoundCap;
        case NSSquareLineCapStyle: return Qt::SquareCap;
        case NSButtLineCapStyle: break;
    }
    return Qt::FlatCap;
}

Qt::PenJoinStyle qtJoin(NSLineJoinStyle join) {
    switch (join) {
        case NSRoundLineJoinStyle: return Qt::RoundJoin;
        case NSBevelLineJoinStyle: return Qt::BevelJoin;
        case NSMiterLineJoinStyle: break;
    }
    return Qt::MiterJoin;
}

QPen qtPen(const StrokeStyle& style, NSColor color) {
    const auto width = static_cast<double>(style.width);
    QPen pen(qtColor(color), width);
    pen.setCapStyle(qtCap(style.cap));
    pen.setJoinStyle(qtJoin(style.join));
    if (style.dash.empty() || width <= 0) return pen;
    // Qt counts dashes in widths of the pen.
    QVector<qreal> dashes;
    for (const float length : style.dash) dashes.append(static_cast<double>(length) / width);
    pen.setDashPattern(dashes);
    pen.setDashOffset(static_cast<double>(style.dashPhase) / width);
    return pen;
}

void playOne(const FillOperation& fill, QPainter& painter) {
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(
        QRectF(static_cast<double>(fill.rect.origin.x), static_cast<double>(fill.rect.origin.y),
               static_cast<double>(fill.rect.size.width),
               static_cast<double>(fill.rect.size.height)),
        qtColor(fill.color));
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
}

void playOne(const StrokeOperation& stroke, QPainter& painter) {
    QPainterPath path;
    for (const PathElement& element : stroke.path) {
        const QPointF point(static_cast<double>(element.point.x),
                            static_cast<double>(element.point.y));
        if (element.kind == NSMoveToBezierPathElement) {
            path.moveTo(point);
        } else {
            path.lineTo(point);
        }
    }
    painter.strokePath(path, qtPen(stroke.style, stroke.color));
}

}  // namespace

void play(const DisplayList& list, QPainter& painter) {
    const QTransform base = painter.transform();
    for (const auto& operation : list) {
        std::visit(
            [&](const auto& one) {
                painter.setTransform(qtTransform(one.transform) * base);
                playOne(one, painter);
            },
            operation);
    }
    painter.setTransform(base);
}

}  // namespace velmora
