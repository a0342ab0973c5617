#include "platform/headless/HeadlessFiles.h"

#include <algorithm>

namespace velmora {

namespace {

bool isAtOrBelow(const std::string& path, const std::string& folder) {
    return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

bool anyHolds(const std::set<std::string>& folders, const std::string& path) {
    return std::any_of(folders.begin(), folders.end(),
                       [&](const std::string& folder) { return isAtOrBelow(path, folder); });
}

void setMember(std::set<std::string>& set, const std::string& path, bool member) {
    if (member) {
        set.insert(path);
    } else {
        set.erase(path);
    }
}

int countOf(const std::map<std::string, int>& counts, const std::string& path) {
    const auto found = counts.find(path);
    return found == counts.end() ? 0 : found->second;
}

FileReading failure(FileReading::Outcome outcome, const char* reason) {
    FileReading reading;
    reading.outcome = outcome;
    reading.reason = reason;
    return reading;
}

}  // namespace

void HeadlessFiles::setWriteFails(const std::string& path, bool fails) {
    setMember(unwritable_, path, fails);
}

void HeadlessFiles::setReadFails(const std::string& path, bool fails) {
    setMember(unreadable_, path, fails);
}

void HeadlessFiles::setReadForbidden(const std::string& path, bool forbidden) {
    setMember(forbidden_, path, forbidden);
}

int HeadlessFiles::readsOf(const std::string& path) const {
    return countOf(reads_, path);
}

int HeadlessFiles::waitsFor(const std::string& path) const {
    return countOf(waits_, path);
}

bool HeadlessFiles::mayWrite(const std::string& path) const {
    return !anyHolds(unwritable_, path);
}

bool HeadlessFiles::fileExistsAtPath(const std::string& path) {
    return memory_.fileExistsAtPath(path);
}

bool HeadlessFiles::createDirectoryAtPath(const std::string& path) {
    return mayWrite(path) && memory_.createDirectoryAtPath(path);
}

std::optional<NSDate> HeadlessFiles::modificationDate(const std::string& path) {
    return memory_.modificationDate(path);
}

std::optional<FileStamp> HeadlessFiles::stamp(const std::string& path) {
    return memory_.stamp(path);
}

FileReading HeadlessFiles::read(const std::string& path, std::size_t limit) {
    ++reads_[path];
    if (anyHolds(unreadable_, path)) {
        return failure(FileReading::Outcome::fault, "Input/output error");
    }
    if (anyHolds(forbidden_, path)) {
        return failure(FileReading::Outcome::unreadable, "Permission denied");
    }
    return memory_.read(path, limit);
}

std::optional<FileStamp> HeadlessFiles::writeAtomically(const std::string& path,
                                                        const std::string& contents) {
    return mayWrite(path) ? memory_.writeAtomically(path, contents) : std::nullopt;
}

void HeadlessFiles::settle(const std::string& path) {
    ++waits_[path];
}

bool HeadlessFiles::duplicate(const std::string& from, const std::string& to) {
    return mayWrite(to) && memory_.duplicate(from, to);
}

std::vector<std::string> HeadlessFiles::namesIn(const std::string& folder) {
    return memory_.namesIn(folder);
}

bool HeadlessFiles::remove(const std::string& path) {
    return mayWrite(path) && memory_.remove(path);
}

std::unique_ptr<ScriptFile> HeadlessFiles::createScriptFile(const std::string& path,
                                                            const std::string& contents) {
    return mayWrite(path) ? memory_.createScriptFile(path, contents) : nullptr;
}

}  // namespace velmora
