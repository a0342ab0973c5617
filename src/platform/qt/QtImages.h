#pragma once

#include <QIcon>
#include <QPixmap>
#include <optional>
#include <string_view>

#include "platform/appkit/Bitmap.h"

namespace velmora {

/// The picture in a file's bytes, in any format that the host's Qt reads; nothing when it is none.
std::optional<Bitmap> decodeImage(std::string_view bytes);

QPixmap pixmapFromBitmap(const Bitmap& bitmap);
QIcon iconFromBitmap(const Bitmap& bitmap);

}  // namespace velmora
