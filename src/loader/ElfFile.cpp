#include "loader/ElfFile.h"

#include <elf.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace velmora {

namespace {

/// No dynamic part is longer.
constexpr std::size_t longestPart = 64U << 20U;

class Reader {
public:
    explicit Reader(const std::string& path) : file_(path, std::ios::binary) {}

    /// Exactly so many bytes; nothing when the file ends before.
    std::string bytes(std::uint64_t offset, std::uint64_t size) {
        std::string read;
        if (size > longestPart) return read;
        read.resize(size);
        file_.clear();
        file_.seekg(static_cast<std::streamoff>(offset));
        file_.read(read.data(), static_cast<std::streamsize>(size));
        if (!file_ || static_cast<std::uint64_t>(file_.gcount()) != size) read.clear();
        return read;
    }

    template <class Record>
    std::vector<Record> records(std::uint64_t offset, std::uint64_t count) {
        const std::string read = bytes(offset, count * sizeof(Record));
        std::vector<Record> records(read.size() / sizeof(Record));
        if (!records.empty()) {
            std::memcpy(records.data(), read.data(), records.size() * sizeof(Record));
        }
        return records;
    }

private:
    std::ifstream file_;
};

std::string replaceOrigin(std::string folder, const std::string& origin) {
    for (const char* name : {"${ORIGIN}", "$ORIGIN"}) {
        const std::size_t at = folder.find(name);
        if (at != std::string::npos) folder.replace(at, std::strlen(name), origin);
    }
    return folder;
}

}  // namespace

bool ElfFile::read(const std::string& path) {
    needed.clear();
    searchPath.clear();
    Reader reader(path);
    const auto headers = reader.records<Elf64_Ehdr>(0, 1);
    if (headers.empty()) return false;
    const Elf64_Ehdr& header = headers.front();
    if (std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0) return false;
    if (header.e_ident[EI_CLASS] != ELFCLASS64 || header.e_phentsize != sizeof(Elf64_Phdr)) {
        return true;
    }

    const auto segments = reader.records<Elf64_Phdr>(header.e_phoff, header.e_phnum);
    std::vector<Elf64_Dyn> entries;
    for (const Elf64_Phdr& segment : segments) {
        if (segment.p_type != PT_DYNAMIC) continue;
        entries = reader.records<Elf64_Dyn>(segment.p_offset, segment.p_filesz / sizeof(Elf64_Dyn));
    }
    std::uint64_t address = 0;
    std::uint64_t size = 0;
    for (const Elf64_Dyn& entry : entries) {
        if (entry.d_tag == DT_STRTAB) address = entry.d_un.d_ptr;
        if (entry.d_tag == DT_STRSZ) size = entry.d_un.d_val;
    }
    std::string strings;
    for (const Elf64_Phdr& segment : segments) {
        if (segment.p_type != PT_LOAD || address < segment.p_vaddr) continue;
        if (address - segment.p_vaddr >= segment.p_filesz) continue;
        strings = reader.bytes(segment.p_offset + (address - segment.p_vaddr), size);
    }
    const auto text = [&strings](const Elf64_Dyn& entry) -> std::string {
        return entry.d_un.d_val < strings.size() ? strings.c_str() + entry.d_un.d_val : "";
    };
    const std::string origin = std::filesystem::path(path).parent_path().string();
    for (const Elf64_Dyn& entry : entries) {
        if (entry.d_tag == DT_NULL) break;
        if (entry.d_tag == DT_NEEDED) needed.push_back(text(entry));
        if (entry.d_tag != DT_RPATH && entry.d_tag != DT_RUNPATH) continue;
        std::istringstream folders(text(entry));
        for (std::string folder; std::getline(folders, folder, ':');) {
            searchPath.push_back(replaceOrigin(folder, origin));
        }
    }
    return true;
}

}  // namespace velmora
