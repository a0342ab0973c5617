#include "platform/qt/base/QtImages.h"

#include <QBuffer>
#include <QGuiApplication>
#include <QImage>
#include <QImageReader>
#include <algorithm>
#include <cstring>

namespace velmora {

namespace {

constexpr int bytesPerPixel = 4;

/// In pixels. The versions of the toolkit have limits of their own, which differ.
constexpr int largestSide = 4096;

}  // namespace

std::optional<Bitmap> decodeImage(std::string_view bytes) {
    if (bytes.size() > static_cast<std::size_t>(INT_MAX)) return std::nullopt;
    QByteArray data = QByteArray::fromRawData(bytes.data(), static_cast<int>(bytes.size()));
    QBuffer buffer(&data);
    QImageReader reader(&buffer);
    const QSize size = reader.size();
    if (std::max(size.width(), size.height()) > largestSide) return std::nullopt;
    const QImage decoded = reader.read();
    if (decoded.isNull() || std::max(decoded.width(), decoded.height()) > largestSide) {
        return std::nullopt;
    }
    const QImage image = decoded.convertToFormat(QImage::Format_RGBA8888);
    if (image.isNull()) return std::nullopt;
    Bitmap bitmap = Bitmap::blank(image.width(), image.height());
    const std::size_t row = static_cast<std::size_t>(image.width()) * bytesPerPixel;
    for (int y = 0; y < image.height(); ++y) {
        std::memcpy(bitmap.pixels.data() + static_cast<std::size_t>(y) * row,
                    image.constScanLine(y), row);
    }
    return bitmap;
}

QPixmap pixmapFromBitmap(const Bitmap& bitmap) {
    // The image only looks at the bitmap's pixels; the pixmap is a copy.
    const QImage image(bitmap.pixels.data(), bitmap.width, bitmap.height,
                       bitmap.width * bytesPerPixel, QImage::Format_RGBA8888);
    return QPixmap::fromImage(image);
}

QPixmap pixmapFromImage(const NSImage& image, qreal devicePixelRatio) {
    const Bitmap* doubled = devicePixelRatio > 1 ? image.doubledBitmap() : nullptr;
    const QSize size = QSize(image.bitmap().width, image.bitmap().height) * devicePixelRatio;
    QPixmap pixmap = pixmapFromBitmap(doubled ? *doubled : image.bitmap());
    if (pixmap.size() != size && !size.isEmpty()) {
        pixmap = pixmap.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
    pixmap.setDevicePixelRatio(devicePixelRatio);
    return pixmap;
}

QIcon iconFromImage(const NSImage& image) {
    QIcon icon(pixmapFromImage(image, 1));
    if (qGuiApp->devicePixelRatio() > 1 && image.doubledBitmap()) {
        icon.addPixmap(pixmapFromImage(image, 2));
    }
    return icon;
}

}  // namespace velmora
