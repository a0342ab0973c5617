#include "loader/QtVersion.h"

#include <glob.h>

#include <cstdlib>
#include <deque>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <vector>

#include "loader/ElfFile.h"

namespace velmora {

namespace {

namespace fs = std::filesystem;

QtVersion versionOfLibrary(const std::string& name) {
    if (name.starts_with("libQt5")) return QtVersion::Five;
    if (name.starts_with("libQt6")) return QtVersion::Six;
    return QtVersion::Unknown;
}

void readLinkerFolders(const std::string& path, std::vector<std::string>& folders, int depth) {
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        std::istringstream words(line.substr(0, line.find('#')));
        std::string word;
        if (!(words >> word)) continue;
        if (word != "include") {
            folders.push_back(word);
            continue;
        }
        std::string pattern;
        if (depth > 4 || !(words >> pattern)) continue;
        if (pattern.front() != '/') pattern.insert(0, "/etc/");
        glob_t found{};
        if (::glob(pattern.c_str(), 0, nullptr, &found) == 0) {
            for (std::size_t i = 0; i < found.gl_pathc; ++i) {
                readLinkerFolders(found.gl_pathv[i], folders, depth + 1);
            }
        }
        ::globfree(&found);
    }
}

/// Where the dynamic linker looks for every program.
std::vector<std::string> linkerFolders() {
    std::vector<std::string> folders;
    if (const char* path = std::getenv("LD_LIBRARY_PATH")) {
        std::istringstream entries(path);
        for (std::string folder; std::getline(entries, folder, ':');) folders.push_back(folder);
    }
    readLinkerFolders("/etc/ld.so.conf", folders, 0);
    for (const char* folder : {"/lib64", "/usr/lib64", "/lib", "/usr/lib"}) {
        folders.emplace_back(folder);
    }
    return folders;
}

std::string findLibrary(const std::string& name, const std::vector<std::string>& first,
                        const std::vector<std::string>& then) {
    for (const auto* folders : {&first, &then}) {
        for (const std::string& folder : *folders) {
            std::error_code error;
            std::string path = folder + '/' + name;
            if (!folder.empty() && fs::exists(path, error)) return path;
        }
    }
    return {};
}

}  // namespace

// Breadth first: what a program is linked with itself counts before what its libraries bring.
QtVersion qtVersionOf(const std::string& executable) {
    std::error_code error;
    std::deque<std::string> files{fs::canonical(executable, error).string()};
    if (error) return QtVersion::Unknown;
    const std::vector<std::string> folders = linkerFolders();
    std::set<std::string> seen;
    for (; !files.empty(); files.pop_front()) {
        ElfFile file;
        file.read(files.front());
        for (const std::string& name : file.needed) {
            const QtVersion version = versionOfLibrary(name);
            if (version != QtVersion::Unknown) return version;
            if (!seen.insert(name).second) continue;
            std::string path = findLibrary(name, file.searchPath, folders);
            if (!path.empty()) files.push_back(std::move(path));
        }
    }
    return QtVersion::Unknown;
}

}  // namespace velmora
