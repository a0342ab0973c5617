#pragma once

#include <string_view>

namespace velmora {

/// Owns a file descriptor of this process.
class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
    ~Descriptor() { close(); }
    Descriptor(Descriptor&& other) noexcept;
    Descriptor& operator=(Descriptor&& other) noexcept;

    bool isOpen() const { return descriptor_ >= 0; }
    int get() const { return descriptor_; }

    /// False when what was written may not have arrived: a network file system may tell only here
    /// that the disk is full.
    bool close();

    /// False when not all of it could be written.
    bool writeAll(std::string_view contents) const;

private:
    int descriptor_ = -1;
};

}  // namespace velmora
