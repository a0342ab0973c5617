#pragma once

#include <string>
#include <vector>

namespace velmora {

/// What the dynamic linker would read of an executable or a shared library of this machine.
struct ElfFile {
    /// The libraries that it needs, by name.
    std::vector<std::string> needed;
    /// Folders of its own to look for them, $ORIGIN replaced.
    std::vector<std::string> searchPath;

    /// Reads the file; empty when it is none. True when it is an ELF file, also one without a
    /// dynamic part.
    bool read(const std::string& path);
};

}  // namespace velmora
