#pragma once

#include <QImage>
#include <QRect>
#include <functional>
#include <map>
#include <utility>
#include <vector>

class QPainter;

namespace velmora {

/// A picture without edges, in squares that are made where something is drawn; transparent
/// everywhere else. Its memory and its cost follow what is drawn, not how far that reaches.
/// Coordinates are pixels of the picture, y growing downward, below zero too.
class TiledImage {
public:
    /// Hands the squares of the area to `act` one by one, with a painter in the coordinates of the
    /// picture that is clipped to the area. Squares that are not there yet are made.
    void draw(const QRect& area, const std::function<void(QPainter&)>& act);

    /// Makes each pixel under the image, whose upper left corner lies there, the greater of the
    /// two: what both cover is not covered twice. Both must be of one colour.
    void unite(QPoint upperLeft, const QImage& image);

    /// The painter has the coordinates of the picture.
    void paint(QPainter& painter, const QRect& area) const;

    /// What is not wholly transparent there, in rows of pixels.
    std::vector<QRect> runs(const QRect& area) const;

    void clear() { tiles_.clear(); }

private:
    using Place = std::pair<int, int>;
    QImage& tile(Place place);
    /// Calls `act` with each square that there is in the area and the square's rectangle.
    template <class Act>
    void forEach(const QRect& area, const Act& act) const;

    std::map<Place, QImage> tiles_;
};

}  // namespace velmora
