#include "platform/qt/trace/TiledImage.h"

#include <QPainter>
#include <algorithm>

namespace velmora {

namespace {

/// The width and height of a square.
constexpr int extent = 128;

int squareOf(int pixel) {
    return pixel >= 0 ? pixel / extent : -((extent - 1 - pixel) / extent);
}

QRect squareAt(std::pair<int, int> place) {
    return {place.first * extent, place.second * extent, extent, extent};
}

/// Calls `act` with the place of each square that the area touches.
template <class Act>
void forEachPlace(const QRect& area, const Act& act) {
    if (area.isEmpty()) return;
    for (int x = squareOf(area.left()); x <= squareOf(area.right()); ++x) {
        for (int y = squareOf(area.top()); y <= squareOf(area.bottom()); ++y) act(std::pair(x, y));
    }
}

}  // namespace

QImage& TiledImage::tile(Place place) {
    QImage& image = tiles_[place];
    if (image.isNull()) {
        image = QImage(extent, extent, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
    }
    return image;
}

template <class Act>
void TiledImage::forEach(const QRect& area, const Act& act) const {
    forEachPlace(area, [&](Place place) {
        const auto found = tiles_.find(place);
        if (found != tiles_.end()) act(found->second, squareAt(place));
    });
}

void TiledImage::draw(const QRect& area, const std::function<void(QPainter&)>& act) {
    forEachPlace(area, [&](Place place) {
        QPainter painter(&tile(place));
        painter.translate(-squareAt(place).topLeft());
        painter.setClipRect(area);
        act(painter);
    });
}

void TiledImage::unite(QPoint upperLeft, const QImage& image) {
    const QRect area(upperLeft, image.size());
    forEachPlace(area, [&](Place place) {
        const QRect square = squareAt(place);
        const QRect common = area & square;
        QImage& own = tile(place);
        for (int y = common.top(); y <= common.bottom(); ++y) {
            const uchar* from = image.constScanLine(y - area.top()) +
                                std::ptrdiff_t{4} * (common.left() - area.left());
            uchar* to = own.scanLine(y - square.top()) +
                        std::ptrdiff_t{4} * (common.left() - square.left());
            std::transform(from, from + std::ptrdiff_t{4} * common.width(), to, to,
                           [](uchar a, uchar b) { return std::max(a, b); });
        }
    });
}

void TiledImage::paint(QPainter& painter, const QRect& area) const {
    forEach(area, [&](const QImage& image, const QRect& square) {
        const QRect common = area & square;
        painter.drawImage(common.topLeft(), image, common.translated(-square.topLeft()));
    });
}

std::vector<QRect> TiledImage::runs(const QRect& area) const {
    std::vector<QRect> runs;
    forEach(area, [&](const QImage& image, const QRect& square) {
        const QRect common = area & square;
        for (int y = common.top(); y <= common.bottom(); ++y) {
            const auto* row = reinterpret_cast<const QRgb*>(image.constScanLine(y - square.top()));
            const auto* end = row + (common.right() - square.left() + 1);
            const auto* at = row + (common.left() - square.left());
            while (at != end) {
                const auto* first = std::find_if(at, end, [](QRgb p) { return qAlpha(p) != 0; });
                at = std::find_if(first, end, [](QRgb p) { return qAlpha(p) == 0; });
                if (first == at) break;
                runs.emplace_back(square.left() + static_cast<int>(first - row), y,
                                  static_cast<int>(at - first), 1);
            }
        }
    });
    return runs;
}

}  // namespace velmora
