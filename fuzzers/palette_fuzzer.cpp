#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "images/VelmoraImageFactory.h"

/// Any bytes as a picture to re-colour: a hue outside the circle changes nothing but the palette's
/// checksum, and a second colouring is no different from the first where hue and data are the same.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using velmora::VelmoraImageFactory;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const auto mended = VelmoraImageFactory::pngData_withHue(bytes, -1);
    if (!mended) return 0;
    if (mended->size() != size) std::abort();
    const std::uint8_t* palette = VelmoraImageFactory::findPaletteIn_length(data, size);
    if (!palette) std::abort();
    const auto start = static_cast<std::size_t>(palette - data);
    const std::size_t length = std::size_t{palette[0]} << 24U | std::size_t{palette[1]} << 16U |
                               std::size_t{palette[2]} << 8U | std::size_t{palette[3]};
    if (std::memcmp(mended->data(), data, start + 8 + length) != 0) std::abort();
    const auto green = VelmoraImageFactory::pngData_withHue(bytes, 20);
    const auto red = VelmoraImageFactory::pngData_withHue(bytes, 0);
    if (!green || !red || VelmoraImageFactory::pngData_withHue(bytes, 20) != green) std::abort();
    // What lies outside the palette chunk is never touched.
    const std::size_t end = start + 12 + length;
    if (std::memcmp(green->data() + end, data + end, size - end) != 0) std::abort();
    return 0;
}
