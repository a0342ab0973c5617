#include "loader/TextFile.h"

#include <fstream>

namespace velmora {

std::string beginningOf(const std::string& path) {
    constexpr std::size_t longest = 256U << 10U;
    std::ifstream file(path, std::ios::binary);
    std::string text(longest, '\0');
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(std::max<std::streamsize>(file.gcount(), 0)));
    return text;
}

}  // namespace velmora
