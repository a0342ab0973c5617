#include "platform/foundation/SettingsFiles.h"

#include <functional>
#include <new>

#include "platform/foundation/NSRunLoop.h"
#include "platform/foundation/files/FileHistory.h"
#include "platform/foundation/files/PropertyListFile.h"
#include "platform/foundation/files/PropertyListGuard.h"
#include "platform/port/Desktop.h"
#include "platform/runtime/NSLog.h"
#include "platform/runtime/ProcessWide.h"

namespace velmora {

namespace {

ProcessWide<SettingsFiles> settingsFiles;

std::string folderOf(const std::string& path) {
    return path.substr(0, path.rfind('/'));
}

std::size_t hashOf(const std::string& contents) {
    return std::hash<std::string>()(contents);
}

}  // namespace

SettingsFiles& SettingsFiles::ofProcess() {
    return settingsFiles;
}

SettingsFiles::Reading SettingsFiles::read(FileSystem& files, const std::string& path) {
    Reading reading;
    const FileReading contents = readContents(files, path);
    reading.failed = contents.outcome == FileReading::Outcome::fault;
    if (contents.outcome != FileReading::Outcome::read) return reading;
    try {
        reading.root = parsedPropertyList(contents.contents);
    } catch (const std::bad_alloc&) {
        reading.failed = true;
        failed(path, "no memory");
    }
    return reading;
}

FileReading SettingsFiles::readContents(FileSystem& files, const std::string& path) {
    using Outcome = FileReading::Outcome;
    FileReading reading = files.read(path, PropertyListLimits::fileSize);
    const std::string folder = folderOf(path);
    const std::optional<FileStamp> standing = files.stamp(folder);
    const auto known = folders_.find(folder);
    if (reading.outcome == Outcome::missing && known != folders_.end() &&
        !(standing && standing->isSameFile(known->second))) {
        reading.outcome = Outcome::fault;
        reading.reason = "the folder is gone";
    }
    if (reading.outcome == Outcome::fault) {
        failed(path, reading.reason);
        return reading;
    }
    std::erase_if(told_, [&](const auto& reason) { return reason.second == path; });
    if (standing) folders_[folder] = *standing;
    if (reading.outcome == Outcome::read) {
        Known& file = files_[path];
        if (file.stamp != reading.stamp) file.isFresh = false;
        file.stamp = reading.stamp;
        file.hash = hashOf(reading.contents);
    }
    return reading;
}

void SettingsFiles::failed(const std::string& path, const std::string& reason) {
    if (told_.emplace(reason, path).second) {
        NSLog("Cannot read '" + path + "' now: " + reason);
    }
}

bool SettingsFiles::write(FileSystem& files, const PropertyList& root, const std::string& path) {
    const std::string xml = xmlDataFromPropertyList(root);
    std::string buffer;
    return guardedXML(xml, buffer) && writeContents(files, xml, path);
}

bool SettingsFiles::writeContents(FileSystem& files, const std::string& contents,
                                  const std::string& path) {
    const std::optional<FileStamp> there = files.stamp(path);
    if (there && there->kind != FileStamp::Kind::regular) return false;
    std::optional<std::string> kept;
    FileHistory history(files, path);
    if (there && mustBeKept(files, path, *there, contents)) kept = keep(history, path);
    const std::optional<FileStamp> stamp = files.writeAtomically(path, contents);
    if (!stamp) {
        if (kept) history.remove(*kept);
        return false;
    }
    if (kept) history.removeOldest();
    files_[path] = {stamp, hashOf(contents), true};
    if (const auto folder = files.stamp(folderOf(path))) folders_[folderOf(path)] = *folder;
    settleAfterPass(files, path);
    return true;
}

void SettingsFiles::keepVersion(FileSystem& files, const PropertyList& root,
                                const std::string& path) {
    const std::string xml = xmlDataFromPropertyList(root);
    if (files.contentsOfFile(path, PropertyListLimits::fileSize) == xml) return;
    FileHistory history(files, path);
    const std::optional<std::string> version = history.keep(xml);
    if (!version) return;
    history.removeOldest();
    settleAfterPass(files, history.pathOf(*version));
}

bool SettingsFiles::mustBeKept(FileSystem& files, const std::string& path, const FileStamp& there,
                               const std::string& contents) {
    const Known& known = files_[path];
    if (known.stamp == there) return !known.isFresh && known.hash != hashOf(contents);
    if (there.size != contents.size()) return true;
    return files.contentsOfFile(path, PropertyListLimits::fileSize) != contents;
}

std::optional<std::string> SettingsFiles::keep(FileHistory& history, const std::string& path) {
    std::optional<std::string> version = history.keep();
    if (!version && !toldOfHistory_) {
        toldOfHistory_ = true;
        NSLog("Cannot keep what '" + path + "' held before in the folder History");
    }
    return version;
}

void SettingsFiles::settleAfterPass(FileSystem& files, const std::string& path) {
    const bool isFirst = fresh_.empty();
    fresh_.insert(path);
    if (!currentDesktop()) {
        endPass(files);
    } else if (isFirst) {
        NSRunLoop::currentRunLoop().performAtNextPass(
            [] { ofProcess().endPass(desktop().files()); });
    }
}

void SettingsFiles::endPass(FileSystem& files) {
    for (const std::string& path : std::exchange(fresh_, {})) {
        if (const auto file = files_.find(path); file != files_.end()) file->second.isFresh = false;
        files.settle(path);
    }
}

}  // namespace velmora
