#include "loader/SettingsCommands.h"

#include <algorithm>
#include <filesystem>
#include <iomanip>
#include <iostream>

#include "loader/SettingsDirectory.h"
#include "loader/SettingsFile.h"
#include "platform/foundation/files/PosixFileSystem.h"
#include "platform/foundation/files/PropertyListGuard.h"

namespace velmora {

namespace {

namespace fs = std::filesystem;

constexpr const char* preferencesName = "VelmoraDefaults.plist";

/// Sorted. Empty, with the reason, when the directory cannot be read.
std::vector<std::string> settingsFiles(std::string* reason = nullptr) {
    std::vector<std::string> paths;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(settingsDirectoryOfUser(), error)) {
        const std::string name = entry.path().filename().string();
        if (SettingsFile::named(name).kind != SettingsFile::Kind::Other) {
            paths.push_back(entry.path().string());
        }
    }
    std::sort(paths.begin(), paths.end());
    if (error && reason) *reason = error.message();
    return paths;
}

/// A file that is not there or not to be read has that as its one problem.
FileReport check(const std::string& path) {
    PosixFileSystem files;
    std::error_code error;
    const std::string absolute = fs::absolute(path, error).string();
    const FileReading reading = files.read(absolute, PropertyListLimits::fileSize);
    if (reading.outcome == FileReading::Outcome::read) {
        return checkSettings(SettingsFile::named(fs::path(path).filename().string()),
                             reading.contents);
    }
    FileReport report;
    report.problems.push_back("cannot be read: " + reading.reason);
    return report;
}

std::string described(const SettingsFile& file, const FileReport& report) {
    std::string text;
    if (file.kind == SettingsFile::Kind::Preferences) {
        text = "preferences";
    } else {
        text = std::to_string(report.count) +
               (report.count == 1 ? " definition, " : " definitions, ") + file.component + " of " +
               (file.application.empty() ? "all applications" : file.application);
    }
    const std::size_t problems = report.problems.size();
    if (problems == 1) text += "; 1 problem";
    if (problems > 1) text += "; " + std::to_string(problems) + " problems";
    return text;
}

}  // namespace

int listSettings() {
    const std::vector<std::string> paths = settingsFiles();
    std::cout << settingsDirectoryOfUser() << (paths.empty() ? ": no files\n" : ":\n");
    std::size_t width = 0;
    for (const std::string& path : paths) {
        width = std::max(width, fs::path(path).filename().string().size());
    }
    for (const std::string& path : paths) {
        const std::string name = fs::path(path).filename().string();
        const FileReport report = check(path);
        std::cout << "  " << std::left << std::setw(static_cast<int>(width)) << name << "  "
                  << (report.isReadable ? described(SettingsFile::named(name), report)
                                        : report.problems.front())
                  << '\n';
    }
    return 0;
}

int checkSettingsFiles(std::vector<std::string> paths) {
    bool good = true;
    if (paths.empty()) {
        std::string reason;
        paths = settingsFiles(&reason);
        const std::string preferences = settingsPathOf(preferencesName);
        if (!reason.empty()) {
            std::cout << settingsDirectoryOfUser() << ": cannot be read: " << reason << '\n';
            good = false;
        } else if (!std::count(paths.begin(), paths.end(), preferences)) {
            std::cout << preferences << ": is missing, so no button or key begins anything\n";
            good = false;
        }
    }
    for (const std::string& path : paths) {
        for (const std::string& problem : check(path).problems) {
            std::cout << path << ": " << problem << '\n';
            good = false;
        }
    }
    return good ? 0 : 1;
}

}  // namespace velmora
