#pragma once

#include <QIcon>
#include <QPixmap>
#include <optional>
#include <string_view>

#include "platform/appkit/drawing/NSImage.h"
#include "platform/port/Bitmap.h"

namespace velmora {

/// The picture in a file's bytes, in any format that the host's Qt reads; nothing when it is none,
/// or has more than 4096 pixels a side.
std::optional<Bitmap> decodeImage(std::string_view bytes);

QPixmap pixmapFromBitmap(const Bitmap& bitmap);
/// For a display with so many pixels a point.
QPixmap pixmapFromImage(const NSImage& image, qreal devicePixelRatio);
/// With as many pixels as the image has and a display can show.
QIcon iconFromImage(const NSImage& image);

}  // namespace velmora
