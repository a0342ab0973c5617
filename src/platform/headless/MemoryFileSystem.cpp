#include "platform/headless/MemoryFileSystem.h"

#include <utility>

namespace velmora {

namespace {

/// The key of the path: single slashes, none at the end.
std::string normal(const std::string& path) {
    std::string result;
    for (const char c : path) {
        if (c != '/' || result.empty() || result.back() != '/') result += c;
    }
    if (!result.empty() && result.back() == '/') result.pop_back();
    return result;
}

std::string parentOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash);
}

bool isInside(const std::string& path, const std::string& folder) {
    return path.size() > folder.size() && path.compare(0, folder.size(), folder) == 0 &&
           path[folder.size()] == '/';
}

}  // namespace

class MemoryFileSystem::MemoryScriptFile final : public ScriptFile {
public:
    MemoryScriptFile(MemoryFileSystem& files, std::string path, int script)
        : files_(files), path_(std::move(path)), script_(script) {}
    ~MemoryScriptFile() override {
        const Item* item = files_.find(path_);
        if (item && item->script == script_) files_.remove(path_);
    }

private:
    MemoryFileSystem& files_;
    std::string path_;
    int script_;
};

MemoryFileSystem::MemoryFileSystem(std::function<NSDate()> clock) : clock_(std::move(clock)) {
    if (!clock_) clock_ = [date = NSDate()]() mutable { return NSDate{++date.nanoseconds}; };
    items_[""].isFolder = true;
}

MemoryFileSystem::Item& MemoryFileSystem::put(const std::string& path, bool isFolder,
                                              const std::string& contents) {
    return items_[normal(path)] = {isFolder, contents, clock_(), ++made_, 0};
}

MemoryFileSystem::Item* MemoryFileSystem::find(const std::string& path) {
    const auto found = items_.find(normal(path));
    return found == items_.end() ? nullptr : &found->second;
}

bool MemoryFileSystem::parentExists(const std::string& path) {
    const Item* parent = find(parentOf(normal(path)));
    return parent && parent->isFolder;
}

bool MemoryFileSystem::isEmptyFolder(const std::string& path) const {
    // "/" sorts before whatever may follow the folder's name in a path inside it.
    const auto next = items_.lower_bound(path + "/");
    return next == items_.end() || !isInside(next->first, path);
}

bool MemoryFileSystem::fileExistsAtPath(const std::string& path) {
    return find(path) != nullptr;
}

bool MemoryFileSystem::createDirectoryAtPath(const std::string& path) {
    if (find(path) || !parentExists(path)) return false;
    put(path, true, {});
    return true;
}

void MemoryFileSystem::createDirectories(const std::string& path) {
    if (find(path)) return;
    createDirectories(parentOf(normal(path)));
    createDirectoryAtPath(path);
}

std::optional<NSDate> MemoryFileSystem::modificationDate(const std::string& path) {
    const Item* item = find(path);
    if (!item) return std::nullopt;
    return item->date;
}

bool MemoryFileSystem::setModificationDate(const std::string& path, NSDate date) {
    Item* item = find(path);
    if (item) item->date = date;
    return item != nullptr;
}

std::optional<FileStamp> MemoryFileSystem::stamp(const std::string& path) {
    const Item* item = find(path);
    if (!item) return std::nullopt;
    return stampOf(*item);
}

FileStamp MemoryFileSystem::stampOf(const Item& item) const {
    FileStamp stamp;
    stamp.kind = item.isFolder ? FileStamp::Kind::folder : FileStamp::Kind::regular;
    stamp.inode = item.serial;
    stamp.modified = item.date;
    stamp.size = item.contents.size();
    return stamp;
}

FileReading MemoryFileSystem::read(const std::string& path, std::size_t limit) {
    FileReading reading;
    const Item* item = find(path);
    if (!item) {
        reading.reason = "No such file or directory";
    } else if (item->isFolder || item->contents.size() > limit) {
        reading.outcome = FileReading::Outcome::unreadable;
        reading.reason = item->isFolder ? "it is no file" : "it is too large";
    } else {
        reading = {FileReading::Outcome::read, item->contents, stampOf(*item), {}};
    }
    return reading;
}

std::optional<FileStamp> MemoryFileSystem::writeAtomically(const std::string& path,
                                                           const std::string& contents) {
    const Item* item = find(path);
    if (!parentExists(path) || (item && item->isFolder)) return std::nullopt;
    return stampOf(put(path, false, contents));
}

bool MemoryFileSystem::duplicate(const std::string& from, const std::string& to) {
    const Item* item = find(from);
    if (!item || item->isFolder || find(to) || !parentExists(to)) return false;
    items_[normal(to)] = *item;
    return true;
}

std::vector<std::string> MemoryFileSystem::namesIn(const std::string& folder) {
    std::vector<std::string> names;
    const std::string prefix = normal(folder) + '/';
    for (auto item = items_.lower_bound(prefix);
         item != items_.end() && item->first.starts_with(prefix); ++item) {
        if (item->first.find('/', prefix.size()) == std::string::npos) {
            names.push_back(item->first.substr(prefix.size()));
        }
    }
    return names;
}

bool MemoryFileSystem::remove(const std::string& path) {
    const std::string key = normal(path);
    const Item* item = find(key);
    if (!item || key.empty() || (item->isFolder && !isEmptyFolder(key))) return false;
    items_.erase(key);
    return true;
}

std::unique_ptr<ScriptFile> MemoryFileSystem::createScriptFile(const std::string& path,
                                                               const std::string& contents) {
    if (!writeAtomically(path, contents)) return nullptr;
    find(path)->script = ++scripts_;
    return std::make_unique<MemoryScriptFile>(*this, path, scripts_);
}

std::optional<std::string> MemoryFileSystem::scriptContents(const std::string& path) {
    const Item* item = find(path);
    if (!item || item->script == 0) return std::nullopt;
    return item->contents;
}

std::vector<std::string> MemoryFileSystem::files() const {
    std::vector<std::string> paths;
    for (const auto& [path, item] : items_) {
        if (!item.isFolder) paths.push_back(path);
    }
    return paths;
}

}  // namespace velmora
