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
#include "loader/FindExecutable.h"
#include "loader/PythonImports.h"
#include "loader/ShellScript.h"
#include "loader/TextFile.h"

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

// Breadth first: what a program is linked with itself counts before what its libraries bring.
QtVersion versionOfBinary(const std::string& executable) {
    std::deque<std::string> files{executable};
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

/// Whether the program is Python of some version, or something that chooses one.
bool isPython(const fs::path& program) {
    const std::string name = program.filename().string();
    return name.starts_with("python") && name.find_first_not_of("0123456789.", 6) == name.npos;
}

bool isShell(const std::string& name) {
    return name == "sh" || name == "dash" || name == "bash" || name == "ksh" || name == "zsh";
}

QtVersion versionOfCommand(const CommandWords& command, int depth);

QtVersion versionOfShell(const CommandWords& arguments, int depth) {
    for (auto argument = arguments.begin(); argument != arguments.end(); ++argument) {
        const bool isText = *argument == "-c" && argument + 1 != arguments.end();
        if (!isText && argument->starts_with('-')) continue;
        for (const CommandWords& program :
             programsOfShellScript(isText ? *++argument : beginningOf(*argument))) {
            const QtVersion version = versionOfCommand(program, depth + 1);
            if (version != QtVersion::Unknown) return version;
        }
        break;
    }
    return QtVersion::Unknown;
}

QtVersion versionOfCommand(const CommandWords& command, int depth) {
    constexpr int deepest = 6;
    if (depth > deepest || command.empty()) return QtVersion::Unknown;
    const std::string named = findExecutable(command.front());
    std::error_code error;
    const std::string file = fs::canonical(named, error).string();
    if (error || !fs::is_regular_file(file, error)) return QtVersion::Unknown;
    const CommandWords arguments(command.begin() + 1, command.end());
    if (isPython(named) || isPython(file)) return PythonImports(named).versionOf(arguments);
    if (ElfFile().read(file)) {
        const std::string name = fs::path(file).filename().string();
        if (isShell(name)) return versionOfShell(arguments, depth);
        return versionOfBinary(file);
    }
    CommandWords words = interpreterOf(beginningOf(file));
    if (words.empty()) return QtVersion::Unknown;
    words.push_back(file);
    words.insert(words.end(), arguments.begin(), arguments.end());
    return versionOfCommand(words, depth + 1);
}

}  // namespace

QtVersion qtVersionOf(const std::vector<std::string>& command) {
    return versionOfCommand(withoutPrefix(command), 0);
}

}  // namespace velmora
