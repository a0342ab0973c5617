#include "loader/SettingsCommands.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iomanip>
#include <iostream>
#include <optional>

#include "loader/SettingsFile.h"
#include "platform/foundation/PosixFileSystem.h"

namespace velmora {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t largestFile = 256U << 20U;

/// As the plug-in has it in every application.
std::string settingsDirectory() {
    const char* home = std::getenv("HOME");
    return std::string(home ? home : "") + "/Library/Application Support/Velmora";
}

std::vector<std::string> settingsFiles() {
    std::vector<std::string> paths;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(settingsDirectory(), error)) {
        const std::string name = entry.path().filename().string();
        if (SettingsFile::named(name).kind != SettingsFile::Kind::Other) {
            paths.push_back(entry.path().string());
        }
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

/// Nothing when the file itself cannot be read.
std::optional<FileReport> check(const std::string& path) {
    PosixFileSystem files;
    std::error_code error;
    const std::string absolute = fs::absolute(path, error).string();
    const std::optional<std::string> contents = files.contentsOfFile(absolute, largestFile);
    if (!contents) return std::nullopt;
    return checkSettings(SettingsFile::named(fs::path(path).filename().string()), *contents);
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
    std::cout << settingsDirectory() << (paths.empty() ? ": no files\n" : ":\n");
    std::size_t width = 0;
    for (const std::string& path : paths) {
        width = std::max(width, fs::path(path).filename().string().size());
    }
    for (const std::string& path : paths) {
        const std::string name = fs::path(path).filename().string();
        const std::optional<FileReport> report = check(path);
        std::cout << "  " << std::left << std::setw(static_cast<int>(width)) << name << "  "
                  << (report ? described(SettingsFile::named(name), *report) : "cannot be read")
                  << '\n';
    }
    return 0;
}

int checkSettingsFiles(std::vector<std::string> paths) {
    if (paths.empty()) paths = settingsFiles();
    bool good = true;
    for (const std::string& path : paths) {
        const std::optional<FileReport> report = check(path);
        if (!report) {
            std::cout << path << ": cannot be read\n";
            good = false;
            continue;
        }
        for (const std::string& problem : report->problems) {
            std::cout << path << ": " << problem << '\n';
            good = false;
        }
    }
    return good ? 0 : 1;
}

}  // namespace velmora
