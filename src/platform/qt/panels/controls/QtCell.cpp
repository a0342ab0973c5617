#include "platform/qt/panels/controls/QtCell.h"

#include <QPainter>

#include "platform/appkit/controls/NSCell.h"
#include "platform/qt/base/QtDrawing.h"
#include "platform/qt/base/QtGuard.h"

namespace velmora {

namespace {

/// Lines to where the path is already: their caps alone are seen, and Qt's paths leave them out.
void drawDots(const StrokeOperation& stroke, QPainter& painter) {
    if (stroke.style.cap == NSButtLineCapStyle) return;
    painter.setPen(qtPen(stroke.style, stroke.color));
    const PathElement* before = nullptr;
    for (const PathElement& element : stroke.path) {
        if (before && element.kind == NSLineToBezierPathElement && before->point == element.point) {
            painter.drawPoint(QPointF(static_cast<double>(element.point.x),
                                      static_cast<double>(element.point.y)));
        }
        before = &element;
    }
}

void play(const StrokeOperation& stroke, QPainter& painter) {
    painter.save();
    painter.setTransform(qtTransform(stroke.transform), true);
    painter.strokePath(qtPath(stroke.path), qtPen(stroke.style, stroke.color));
    drawDots(stroke, painter);
    painter.restore();
}

}  // namespace

void drawCell(NSCell& cell, const QRectF& rect, YAxis axis, QPainter& painter, NSColor ink) {
    guarded("Drawing a cell", [&] {
        const NSRect frame{{},
                           {static_cast<float>(rect.width()), static_cast<float>(rect.height())}};
        DisplayList drawn =
            NSGraphicsContext::record([&] { cell.drawInteriorWithFrame_inView(frame, nullptr); });
        painter.save();
        painter.setClipRect(rect, Qt::IntersectClip);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.translate(axis == YAxis::up ? rect.bottomLeft() : rect.topLeft());
        if (axis == YAxis::up) painter.scale(1, -1);
        for (auto& operation : drawn) {
            std::visit(
                [&](auto& one) {
                    if (one.color == NSColor::blackColor()) one.color = ink;
                    play(one, painter);
                },
                operation);
        }
        painter.restore();
    });
}

}  // namespace velmora
