#include "platform/qt/base/QtDrawing.h"

#include <QPainter>

namespace velmora {

namespace {

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

}  // namespace

QTransform qtTransform(const NSAffineTransform& transform) {
    return {static_cast<double>(transform.m11), static_cast<double>(transform.m12),
            static_cast<double>(transform.m21), static_cast<double>(transform.m22),
            static_cast<double>(transform.tX),  static_cast<double>(transform.tY)};
}

QColor qtColor(NSColor color) {
    return QColor::fromRgbF(color.red, color.green, color.blue, color.alpha);
}

NSColor nsColor(const QColor& color) {
    return {static_cast<float>(color.redF()), static_cast<float>(color.greenF()),
            static_cast<float>(color.blueF()), static_cast<float>(color.alphaF())};
}

QPainterPath qtPath(const PathElements& elements) {
    QPainterPath path;
    for (const PathElement& element : elements) {
        const QPointF point(static_cast<double>(element.point.x),
                            static_cast<double>(element.point.y));
        if (element.kind == NSMoveToBezierPathElement) {
            path.moveTo(point);
        } else {
            path.lineTo(point);
        }
    }
    return path;
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

void play(const FillOperation& fill, QPainter& painter) {
    painter.save();
    painter.setTransform(qtTransform(fill.transform), true);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(
        QRectF(static_cast<double>(fill.rect.origin.x), static_cast<double>(fill.rect.origin.y),
               static_cast<double>(fill.rect.size.width),
               static_cast<double>(fill.rect.size.height)),
        qtColor(fill.color));
    painter.restore();
}

}  // namespace velmora
