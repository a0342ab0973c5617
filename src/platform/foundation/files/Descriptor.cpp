#include "platform/foundation/files/Descriptor.h"

#include <unistd.h>

#include <cerrno>
#include <utility>

namespace velmora {

Descriptor::Descriptor(Descriptor&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)) {}

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
    if (this != &other) {
        close();
        descriptor_ = std::exchange(other.descriptor_, -1);
    }
    return *this;
}

bool Descriptor::close() {
    const int descriptor = std::exchange(descriptor_, -1);
    return descriptor < 0 || ::close(descriptor) == 0 || errno == EINTR;
}

bool Descriptor::writeAll(std::string_view contents) const {
    while (!contents.empty()) {
        const ssize_t written = ::write(descriptor_, contents.data(), contents.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        contents.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

}  // namespace velmora
