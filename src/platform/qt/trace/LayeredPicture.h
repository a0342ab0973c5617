#pragma once

#include <variant>

#include "platform/qt/trace/StrokeLayer.h"

namespace velmora {

/// The picture of a display list that is shown again and again while it grows: each time costs what
/// is new in it. Coordinates are pixels of a plane that stays where it is when the list's base
/// coordinates move with their window.
class LayeredPicture {
public:
    explicit LayeredPicture(Edges edges) : edges_(edges) {}

    /// `toPlane` leads from the list's base coordinates. Returns what is different from before.
    LayerChange show(const DisplayList& list, const QTransform& toPlane);
    /// The painter has the coordinates of the plane.
    void paint(QPainter& painter, const QRect& area) const { picture_.paint(painter, area); }
    /// What is not wholly transparent there, in rows of pixels.
    std::vector<QRect> runs(const QRect& area) const { return picture_.runs(area); }
    QRect bounds() const { return bounds_; }
    void clear();

private:
    struct Fill {
        FillOperation operation;
        QTransform toPlane;
        QRect area() const;
    };
    using Layer = std::variant<Fill, StrokeLayer>;

    bool takes(const DisplayList& list) const;
    void compose(const QRect& area);

    Edges edges_;
    std::vector<Layer> layers_;
    TiledImage picture_;
    QRect bounds_;
};

}  // namespace velmora
