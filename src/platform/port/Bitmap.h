#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace velmora {

/// A picture in memory: rows from the top, each pixel red, green, blue, alpha, one byte each, the
/// colours not multiplied by alpha.
struct Bitmap {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> pixels;

    static Bitmap blank(int width, int height) {
        return {width, height,
                std::vector<std::uint8_t>(static_cast<std::size_t>(width) *
                                          static_cast<std::size_t>(height) * 4)};
    }
    bool operator==(const Bitmap&) const = default;
};

}  // namespace velmora
