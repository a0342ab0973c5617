#include "loader/PythonImports.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <sstream>

#include "loader/TextFile.h"

namespace velmora {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t mostModules = 300;

struct Binding {
    const char* name;
    QtVersion version;
};

/// In the order in which packages that take any of them look for one.
constexpr Binding bindings[] = {{"PyQt5", QtVersion::Five},
                                {"PySide2", QtVersion::Five},
                                {"PyQt6", QtVersion::Six},
                                {"PySide6", QtVersion::Six}};

/// Packages that stand for whichever of them there is.
bool standsForAny(const std::string& name) {
    return name == "qtpy" || name == "AnyQt";
}

std::string lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

std::string trimmed(const std::string& line) {
    const std::size_t begin = line.find_first_not_of(" \t");
    return begin == std::string::npos ? "" : line.substr(begin);
}

/// The strings in quotes that name folders of this machine.
std::vector<std::string> foldersIn(const std::string& line) {
    std::vector<std::string> folders;
    std::size_t begin = line.find_first_of("'\"");
    while (begin != std::string::npos) {
        const std::size_t end = line.find(line[begin], begin + 1);
        if (end == std::string::npos) break;
        std::string text = line.substr(begin + 1, end - begin - 1);
        if (text.starts_with('/')) folders.push_back(std::move(text));
        begin = line.find_first_of("'\"", end + 1);
    }
    return folders;
}

}  // namespace

PythonImports::PythonImports(const std::string& interpreter) {
    if (const char* path = std::getenv("PYTHONPATH")) {
        std::istringstream entries(path);
        for (std::string folder; std::getline(entries, folder, ':');) addFolder(folder);
    }
    const std::string prefix = fs::path(interpreter).parent_path().parent_path().string();
    if (const char* home = std::getenv("HOME")) addPackagesBelow(std::string(home) + "/.local");
    addPackagesBelow(prefix);
    addPackagesBelow(prefix + "/local");
}

void PythonImports::addPackagesBelow(const std::string& prefix) {
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(prefix + "/lib", error)) {
        if (!entry.path().filename().string().starts_with("python3")) continue;
        addFolder(entry.path() / "site-packages");
        addFolder(entry.path() / "dist-packages");
    }
}

void PythonImports::addFolder(const std::string& folder) {
    std::error_code error;
    if (fs::is_directory(folder, error)) folders_.push_back(folder);
}

QtVersion PythonImports::versionOf(const std::vector<std::string>& arguments) {
    std::optional<QtVersion> version;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        const bool hasNext = i + 1 < arguments.size();
        if (argument == "-c") {
            if (hasNext) version = readText(arguments[i + 1], "");
            break;
        }
        if (argument == "-m") {
            if (hasNext) enqueue(arguments[i + 1], "");
            if (hasNext) enqueue(arguments[i + 1] + ".__main__", "");
            break;
        }
        if (argument == "-X" || argument == "-W") ++i;
        if (argument.starts_with('-')) continue;
        std::error_code error;
        const fs::path script = fs::canonical(argument, error);
        if (error) break;
        folders_.insert(folders_.begin(), script.parent_path().string());
        modules_.push_back({script.string(), ""});
        break;
    }
    for (std::size_t count = 0; !version && !modules_.empty() && count < mostModules; ++count) {
        const Module module = modules_.front();
        modules_.pop_front();
        version = readText(beginningOf(module.file), module.package);
    }
    return version.value_or(named_);
}

std::optional<QtVersion> PythonImports::readText(const std::string& text,
                                                 const std::string& package) {
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        line = trimmed(line);
        if (line.find("sys.path") != std::string::npos) {
            for (const std::string& folder : foldersIn(line)) addFolder(folder);
        }
        if (!line.starts_with("import ") && !line.starts_with("from ")) continue;
        if (const std::optional<QtVersion> version = readImport(line, package)) return version;
    }
    return std::nullopt;
}

std::optional<QtVersion> PythonImports::readImport(const std::string& line,
                                                   const std::string& package) {
    std::string text = line.substr(0, line.find('#'));
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c == ',' || c == ';' || c == '('; }, ' ');
    std::istringstream stream(text);
    std::string first;
    std::string name;
    stream >> first;
    if (first == "import") {
        while (stream >> name) {
            if (name == "as" && stream >> name) continue;
            if (const auto version = bindingVersion(name)) return version;
            enqueue(name, "");
        }
        return std::nullopt;
    }
    if (!(stream >> name)) return std::nullopt;
    const std::size_t dots = std::min(name.find_first_not_of('.'), name.size());
    fs::path below;
    if (dots > 0) {
        if (package.empty()) return std::nullopt;
        below = package;
        for (std::size_t i = 1; i < dots; ++i) below = below.parent_path();
        name.erase(0, dots);
    } else if (const auto version = bindingVersion(name)) {
        return version;
    }
    if (!name.empty()) enqueue(name, below.string());
    // What follows may be a module of the package as well as something in it.
    for (std::string item; stream >> item;) {
        if (item == "import") continue;
        if (item == "as" && stream >> item) continue;
        enqueue(name.empty() ? item : name + '.' + item, below.string());
    }
    return std::nullopt;
}

std::optional<QtVersion> PythonImports::bindingVersion(const std::string& name) {
    const std::string package = name.substr(0, name.find('.'));
    if (standsForAny(package)) {
        const QtVersion version = installedVersion();
        if (version != QtVersion::Unknown) return version;
    }
    for (const Binding& binding : bindings) {
        if (package != binding.name) continue;
        if (named_ == QtVersion::Unknown) named_ = binding.version;
        // A program that tries several takes the first that is there.
        if (isInstalled(package)) return binding.version;
    }
    return std::nullopt;
}

QtVersion PythonImports::installedVersion() const {
    const char* wanted = std::getenv("QT_API");
    for (const Binding& binding : bindings) {
        if (wanted && lower(wanted) == lower(binding.name)) return binding.version;
    }
    for (const Binding& binding : bindings) {
        if (isInstalled(binding.name)) return binding.version;
    }
    return QtVersion::Unknown;
}

bool PythonImports::isInstalled(const std::string& package) const {
    return std::any_of(folders_.begin(), folders_.end(), [&](const std::string& folder) {
        std::error_code error;
        return fs::is_directory(fs::path(folder) / package, error);
    });
}

void PythonImports::enqueue(const std::string& name, const std::string& below) {
    std::vector<std::string> folders = folders_;
    if (!below.empty()) folders = {below};
    std::string path = name;
    std::replace(path.begin(), path.end(), '.', '/');
    for (const std::string& folder : folders) {
        const fs::path module = fs::path(folder) / path;
        std::error_code error;
        // Importing a module runs its packages first.
        for (fs::path up = module; up.string().size() > folder.size(); up = up.parent_path()) {
            const fs::path initial = up / "__init__.py";
            if (!fs::is_regular_file(initial, error) || !seen_.insert(initial).second) continue;
            modules_.push_back({initial.string(), up.string()});
        }
        const std::string file = module.string() + ".py";
        const bool isFile = fs::is_regular_file(file, error);
        if (isFile && seen_.insert(file).second) {
            modules_.push_back({file, module.parent_path().string()});
        }
        if (isFile || fs::is_directory(module, error)) return;
    }
}

}  // namespace velmora
