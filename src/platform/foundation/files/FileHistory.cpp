#include "platform/foundation/files/FileHistory.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <ctime>

#include "platform/port/FileSystem.h"

namespace velmora {

namespace {

constexpr std::int64_t nanosecondsInMillisecond = 1'000'000;
constexpr std::int64_t millisecondsInSecond = 1000;

std::string versionAt(std::int64_t milliseconds) {
    const auto seconds = static_cast<std::time_t>(milliseconds / millisecondsInSecond);
    std::tm time{};
    ::gmtime_r(&seconds, &time);
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d-%02d-%02d.%03dZ", time.tm_year + 1900,
                  time.tm_mon + 1, time.tm_mday, time.tm_hour, time.tm_min, time.tm_sec,
                  static_cast<int>(milliseconds % millisecondsInSecond));
    return text;
}

/// Nothing for what is no version's name.
std::optional<std::int64_t> millisecondsOf(const std::string& version) {
    std::tm time{};
    int milliseconds = 0;
    if (std::sscanf(version.c_str(), "%4d-%2d-%2dT%2d-%2d-%2d.%3dZ", &time.tm_year, &time.tm_mon,
                    &time.tm_mday, &time.tm_hour, &time.tm_min, &time.tm_sec, &milliseconds) != 7) {
        return std::nullopt;
    }
    time.tm_year -= 1900;
    --time.tm_mon;
    const std::int64_t moment = ::timegm(&time) * millisecondsInSecond + milliseconds;
    return versionAt(moment) == version ? std::optional(moment) : std::nullopt;
}

}  // namespace

FileHistory::FileHistory(FileSystem& files, const std::string& path) : files_(files), path_(path) {
    const std::size_t nameAt = path.rfind('/') + 1;
    folder_ = path.substr(0, nameAt) + "History";
    name_ = path.substr(nameAt) + '.';
    prefix_ = folder_ + '/' + name_;
}

std::vector<std::string> FileHistory::versions() const {
    std::vector<std::string> found;
    for (const std::string& name : files_.namesIn(folder_)) {
        if (!name.starts_with(name_)) continue;
        std::string version = name.substr(name_.size());
        if (millisecondsOf(version)) found.push_back(std::move(version));
    }
    std::sort(found.begin(), found.end());
    return found;
}

std::string FileHistory::nextVersion() {
    if (!files_.stamp(folder_)) files_.createDirectoryAtPath(folder_);
    kept_ = versions();
    std::int64_t moment = files_.now().nanoseconds / nanosecondsInMillisecond;
    // The order of the names is that of the versions, also when the clock was set back.
    if (!kept_.empty()) moment = std::max(moment, *millisecondsOf(kept_.back()) + 1);
    return kept_.emplace_back(versionAt(moment));
}

std::optional<std::string> FileHistory::keep() {
    // Another process may just have taken the name.
    constexpr int attempts = 10;
    for (int i = 0; i < attempts; ++i) {
        const std::string version = nextVersion();
        if (files_.duplicate(path_, pathOf(version))) return version;
        if (!files_.stamp(pathOf(version))) break;
    }
    return std::nullopt;
}

std::optional<std::string> FileHistory::keep(const std::string& contents) {
    const std::string version = nextVersion();
    if (!files_.writeAtomically(pathOf(version), contents)) return std::nullopt;
    return version;
}

void FileHistory::remove(const std::string& version) {
    files_.remove(pathOf(version));
}

void FileHistory::removeOldest() {
    for (std::size_t i = 0; i + mostVersions < kept_.size(); ++i) remove(kept_[i]);
}

}  // namespace velmora
