#include "platform/qt/base/HostProcess.h"

#include <dlfcn.h>

#include <QDir>
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace velmora {

namespace {

namespace fs = std::filesystem;

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

/// Whether programs of this name run scripts: the name, perhaps with a version behind it.
bool isInterpreter(std::string name) {
    const std::size_t end = name.find_last_not_of("0123456789.-");
    name.resize(end == std::string::npos ? 0 : end + 1);
    static constexpr const char* names[] = {"python", "pypy", "perl", "ruby", "node", "gjs"};
    return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

/// "de_DE.UTF-8@euro" is "de_DE"; the locale without a language speaks English.
std::string languageOfLocale(const std::string& locale) {
    const std::string language = locale.substr(0, locale.find_first_of(".@"));
    return language == "C" || language == "POSIX" ? "en" : language;
}

std::vector<std::string> commandLine() {
    std::ifstream file("/proc/self/cmdline", std::ios::binary);
    std::vector<std::string> arguments;
    for (std::string argument; std::getline(file, argument, '\0');) arguments.push_back(argument);
    return arguments;
}

}  // namespace

std::string processNameFor(const std::string& executable,
                           const std::vector<std::string>& arguments) {
    std::string path = executable;
    // So the kernel tells that the file was replaced while it runs.
    constexpr std::string_view deleted = " (deleted)";
    if (path.size() > deleted.size() && path.ends_with(deleted)) {
        path.resize(path.size() - deleted.size());
    }
    const std::string name = fs::path(path).filename().string();
    if (!isInterpreter(name)) return name;
    for (std::size_t i = 1; i < arguments.size(); ++i) {
        if (arguments[i] == "-c") break;
        if (arguments[i] == "-m" && i + 1 < arguments.size()) return arguments[i + 1];
        if (arguments[i].starts_with('-')) continue;
        std::error_code error;
        if (fs::is_regular_file(arguments[i], error)) {
            return fs::path(arguments[i]).filename().string();
        }
    }
    return name;
}

std::string hostProcessName() {
    std::error_code error;
    const fs::path executable = fs::read_symlink("/proc/self/exe", error);
    const std::vector<std::string> arguments = commandLine();
    if (!error) return processNameFor(executable.string(), arguments);
    return arguments.empty() ? "" : fs::path(arguments.front()).filename().string();
}

std::string userHomeDirectory() {
    return QDir::homePath().toStdString();
}

std::string findResourceDirectory() {
    if (const std::string wanted = environment("VELMORA_RESOURCES"); !wanted.empty()) return wanted;
    Dl_info info{};
    if (!::dladdr(reinterpret_cast<const void*>(&findResourceDirectory), &info)) return {};
    std::error_code error;
    fs::path folder = fs::canonical(info.dli_fname, error).parent_path();
    for (; !error && folder.has_relative_path(); folder = folder.parent_path()) {
        const fs::path resources = folder / "share" / "velmora";
        if (fs::is_directory(resources / "interface", error)) return resources.string();
        error.clear();
    }
    return {};
}

std::vector<std::string> userLanguages() {
    std::string locale;
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        locale = environment(name);
        if (!locale.empty()) break;
    }
    std::vector<std::string> languages;
    // As everywhere, the list counts only where a language is asked for at all, and then alone.
    if (!locale.empty() && locale != "C" && locale != "POSIX") {
        std::istringstream list(environment("LANGUAGE"));
        for (std::string entry; std::getline(list, entry, ':');) {
            if (!entry.empty()) languages.push_back(languageOfLocale(entry));
        }
    }
    if (languages.empty()) languages.push_back(languageOfLocale(locale.empty() ? "C" : locale));
    return languages;
}

}  // namespace velmora
