#include "loader/HistoryCommands.h"

#include <algorithm>
#include <iostream>
#include <set>

#include "loader/SettingsDifference.h"
#include "loader/SettingsDirectory.h"
#include "loader/SettingsFile.h"
#include "platform/foundation/SettingsFiles.h"
#include "platform/foundation/files/FileHistory.h"
#include "platform/foundation/files/PosixFileSystem.h"
#include "platform/foundation/files/PropertyListGuard.h"

namespace velmora {

namespace {

constexpr std::size_t largestFile = PropertyListLimits::fileSize;

/// The names of all files that have versions.
std::vector<std::string> filesWithVersions(FileSystem& files) {
    constexpr std::string_view extension = ".plist.";
    std::set<std::string> names;
    for (const std::string& name : files.namesIn(settingsDirectoryOfUser() + "/History")) {
        const std::size_t end = name.rfind(extension);
        if (end != std::string::npos) names.insert(name.substr(0, end + extension.size() - 1));
    }
    return {names.begin(), names.end()};
}

std::string described(const std::string& path, const FileReading& reading) {
    using Outcome = FileReading::Outcome;
    if (reading.outcome != Outcome::read) return "cannot be read: " + reading.reason;
    const SettingsFile file = SettingsFile::named(path.substr(path.rfind('/') + 1));
    const FileReport report = checkSettings(file, reading.contents);
    if (file.kind == SettingsFile::Kind::Definitions && report.isReadable) {
        return std::to_string(report.count) + (report.count == 1 ? " definition" : " definitions");
    }
    return std::to_string(reading.contents.size()) + " bytes" +
           (report.isReadable ? "" : "; " + report.problems.front());
}

void printDifferences(const FileReading& before, const FileReading& after) {
    using Outcome = FileReading::Outcome;
    if (after.outcome == Outcome::missing) std::cout << "      then removed the file\n";
    if (before.outcome != Outcome::read || after.outcome != Outcome::read) return;
    const std::vector<std::string> phrases = differencesBetween(before.contents, after.contents);
    constexpr std::size_t most = 20;
    for (std::size_t i = 0; i < std::min(most, phrases.size()); ++i) {
        std::cout << "      then " << phrases[i] << '\n';
    }
    if (phrases.size() > most) {
        std::cout << "      and " << phrases.size() - most << " more changes\n";
    }
}

/// Whether there are versions.
bool printHistory(FileSystem& files, const std::string& path) {
    const FileHistory history(files, path);
    const std::vector<std::string> versions = history.versions();
    std::cout << path << (versions.empty() ? ": no versions\n" : ":\n");
    FileReading reading;
    for (std::size_t i = 0; i < versions.size(); ++i) {
        if (i == 0) reading = files.read(history.pathOf(versions[0]), largestFile);
        std::cout << "  " << versions[i] << "  " << described(path, reading) << '\n';
        const std::string next = i + 1 < versions.size() ? history.pathOf(versions[i + 1]) : path;
        FileReading after = files.read(next, largestFile);
        printDifferences(reading, after);
        reading = std::move(after);
    }
    return !versions.empty();
}

}  // namespace

int listHistory(std::vector<std::string> files) {
    PosixFileSystem disk;
    if (files.empty()) {
        files = filesWithVersions(disk);
        if (files.empty()) std::cout << settingsDirectoryOfUser() << ": no versions\n";
        for (const std::string& file : files) printHistory(disk, settingsPathOf(file));
        return 0;
    }
    bool found = true;
    for (const std::string& file : files) found = printHistory(disk, settingsPathOf(file)) && found;
    return found ? 0 : 1;
}

int restoreVersion(const std::string& file, const std::string& version) {
    PosixFileSystem disk;
    const std::string path = settingsPathOf(file);
    const FileHistory history(disk, path);
    const std::vector<std::string> versions = history.versions();
    if (std::find(versions.begin(), versions.end(), version) == versions.end()) {
        std::cerr << "velmora: there is no version " << version << " of " << path << '\n';
        return 1;
    }
    const FileReading reading = disk.read(history.pathOf(version), largestFile);
    if (reading.outcome != FileReading::Outcome::read) {
        std::cerr << "velmora: the version cannot be read: " << reading.reason << '\n';
        return 1;
    }
    const FileReading before = disk.read(path, largestFile);
    if (!SettingsFiles::ofProcess().writeContents(disk, reading.contents, path)) {
        std::cerr << "velmora: " << path << " cannot be written\n";
        return 1;
    }
    std::cout << path << " is as it was until " << version << '\n';
    const std::vector<std::string> kept = history.versions();
    if (before.outcome != FileReading::Outcome::missing && before.contents != reading.contents &&
        !kept.empty() && kept.back() == versions.back()) {
        std::cerr << "velmora: what it held meanwhile could not be kept\n";
    }
    return 0;
}

}  // namespace velmora
