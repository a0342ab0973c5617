#include "platform/qt/trace/LayeredPicture.h"

#include <QPainter>

#include "platform/qt/base/QtDrawing.h"

namespace velmora {

namespace {

/// The operations that count: what clears a plane that is clear already does nothing.
DisplayList withoutLeadingClears(const DisplayList& list) {
    const auto clears = [](const auto& operation) {
        const auto* fill = std::get_if<FillOperation>(&operation);
        return fill && fill->color.alpha <= 0;
    };
    return {std::find_if_not(list.begin(), list.end(), clears), list.end()};
}

}  // namespace

QRect LayeredPicture::Fill::area() const {
    const QRectF rect(static_cast<double>(operation.rect.origin.x),
                      static_cast<double>(operation.rect.origin.y),
                      static_cast<double>(operation.rect.size.width),
                      static_cast<double>(operation.rect.size.height));
    return (qtTransform(operation.transform) * toPlane).mapRect(rect).toAlignedRect();
}

bool LayeredPicture::takes(const DisplayList& list) const {
    return std::equal(layers_.begin(), layers_.end(), list.begin(), list.end(),
                      [](const Layer& layer, const auto& operation) {
                          return std::holds_alternative<Fill>(layer) ==
                                 std::holds_alternative<FillOperation>(operation);
                      });
}

void LayeredPicture::clear() {
    layers_.clear();
    picture_.clear();
    bounds_ = QRect();
}

LayerChange LayeredPicture::show(const DisplayList& list, const QTransform& toPlane) {
    const DisplayList operations = withoutLeadingClears(list);
    LayerChange change;
    const auto add = [&change](const LayerChange& one) {
        change.area |= one.area;
        if (!one.area.isEmpty()) change.onlyAdds = change.onlyAdds && one.onlyAdds;
    };
    if (!takes(operations)) {
        add({bounds_, bounds_.isEmpty()});
        clear();
        for (const auto& operation : operations) {
            if (std::holds_alternative<FillOperation>(operation)) {
                layers_.emplace_back(Fill());
            } else {
                layers_.emplace_back(StrokeLayer(edges_));
            }
        }
    }
    bounds_ = QRect();
    for (std::size_t i = 0; i < layers_.size(); ++i) {
        if (auto* stroke = std::get_if<StrokeLayer>(&layers_[i])) {
            const auto& operation = std::get<StrokeOperation>(operations[i]);
            add(stroke->draw(operation, qtTransform(operation.transform) * toPlane));
            bounds_ |= stroke->bounds();
            continue;
        }
        auto& fill = std::get<Fill>(layers_[i]);
        const Fill now{std::get<FillOperation>(operations[i]), toPlane};
        if (now.area() != fill.area() || now.operation.color != fill.operation.color) {
            add({fill.area() | now.area(), false});
        }
        fill = now;
        bounds_ |= fill.area();
    }
    if (!change.area.isEmpty()) compose(change.area);
    return change;
}

void LayeredPicture::compose(const QRect& area) {
    picture_.draw(area, [&](QPainter& painter) {
        painter.setCompositionMode(QPainter::CompositionMode_Clear);
        painter.fillRect(area, Qt::transparent);
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
        for (const Layer& layer : layers_) {
            if (const auto* stroke = std::get_if<StrokeLayer>(&layer)) {
                stroke->paint(painter, area);
                continue;
            }
            const auto& fill = std::get<Fill>(layer);
            painter.save();
            painter.setTransform(fill.toPlane, true);
            play(fill.operation, painter);
            painter.restore();
        }
    });
}

}  // namespace velmora
