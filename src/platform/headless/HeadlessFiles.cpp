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

}  // namespace

void HeadlessFiles::setWriteFails(const std::string& path, bool fails) {
    setMember(unwritable_, path, fails);
}

void HeadlessFiles::setReadFails(const std::string& path, bool fails) {
    setMember(unreadable_, path, fails);
}

int HeadlessFiles::readsOf(const std::string& path) const {
    const auto found = reads_.find(path);
    return found == reads_.end() ? 0 : found->second;
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

std::optional<std::string> HeadlessFiles::contentsOfFile(const std::string& path,
                                                         std::size_t limit) {
    ++reads_[path];
    if (anyHolds(unreadable_, path)) return std::nullopt;
    return memory_.contentsOfFile(path, limit);
}

bool HeadlessFiles::writeAtomically(const std::string& path, const std::string& contents) {
    return mayWrite(path) && memory_.writeAtomically(path, contents);
}

bool HeadlessFiles::rename(const std::string& from, const std::string& to) {
    return mayWrite(from) && mayWrite(to) && memory_.rename(from, to);
}

bool HeadlessFiles::remove(const std::string& path) {
    return mayWrite(path) && memory_.remove(path);
}

std::unique_ptr<ScriptFile> HeadlessFiles::createScriptFile(const std::string& path,
                                                            const std::string& contents) {
    return mayWrite(path) ? memory_.createScriptFile(path, contents) : nullptr;
}

}  // namespace velmora
