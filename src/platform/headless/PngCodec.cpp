#include "platform/headless/PngCodec.h"

#include <png.h>

#include <cstring>

namespace velmora {

namespace {

constexpr png_uint_32 maximumSide = 4096;

/// The simplified interface of the library reports errors in the structure, without longjmp.
struct Image {
    Image() {
        std::memset(&value, 0, sizeof value);
        value.version = PNG_IMAGE_VERSION;
    }
    ~Image() { png_image_free(&value); }
    Image(const Image&) = delete;
    Image& operator=(const Image&) = delete;

    png_image value;
};

}  // namespace

std::optional<Bitmap> decodePng(std::string_view bytes) {
    Image image;
    if (png_image_begin_read_from_memory(&image.value, bytes.data(), bytes.size()) == 0) {
        return std::nullopt;
    }
    if (image.value.width > maximumSide || image.value.height > maximumSide) return std::nullopt;
    image.value.format = PNG_FORMAT_RGBA;
    Bitmap bitmap =
        Bitmap::blank(static_cast<int>(image.value.width), static_cast<int>(image.value.height));
    if (png_image_finish_read(&image.value, nullptr, bitmap.pixels.data(), 0, nullptr) == 0) {
        return std::nullopt;
    }
    return bitmap;
}

std::string encodePng(const Bitmap& bitmap) {
    Image image;
    image.value.width = static_cast<png_uint_32>(bitmap.width);
    image.value.height = static_cast<png_uint_32>(bitmap.height);
    image.value.format = PNG_FORMAT_RGBA;
    png_alloc_size_t size = 0;
    if (png_image_write_get_memory_size(image.value, size, 0, bitmap.pixels.data(), 0, nullptr) ==
        0) {
        return {};
    }
    std::string bytes(size, '\0');
    if (png_image_write_to_memory(&image.value, bytes.data(), &size, 0, bitmap.pixels.data(), 0,
                                  nullptr) == 0) {
        return {};
    }
    bytes.resize(size);
    return bytes;
}

}  // namespace velmora
