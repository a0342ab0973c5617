#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/port/Bitmap.h"

namespace velmora {

/// The picture in a PNG file's bytes, whatever its colour type. Nothing when the bytes are none,
/// are broken or cut off, or hold more than 4096 by 4096 pixels.
std::optional<Bitmap> decodePng(std::string_view bytes);

/// The bytes of a PNG file with that picture.
std::string encodePng(const Bitmap& bitmap);

}  // namespace velmora
