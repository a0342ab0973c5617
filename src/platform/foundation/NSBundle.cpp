#include "platform/foundation/NSBundle.h"

#include <utility>

#include "platform/foundation/files/OldStylePropertyList.h"
#include "platform/foundation/files/PosixFileSystem.h"
#include "platform/port/Desktop.h"
#include "platform/runtime/NSLog.h"
#include "platform/runtime/ProcessWide.h"

namespace velmora {

namespace {

ProcessWide<std::shared_ptr<NSBundle>> mainBundle;

std::optional<std::string> existing(const std::string& path) {
    if (!NSBundle::resourceFiles().fileExistsAtPath(path)) return std::nullopt;
    return path;
}

/// The table of a file: nothing when there is none, or, with a line in the log, when it is broken.
std::optional<PropertyList> tableFromFile(const std::string& path) {
    const auto text = NSBundle::resourceFiles().contentsOfFile(path);
    if (!text) return std::nullopt;
    PropertyListError error;
    auto table = propertyListFromOldStyleText(*text, &error);
    if (table && table->dictionary()) return table;
    if (table) error = {1, 1, "this is no table"};
    NSLog(path + ":" + std::to_string(error.line) + ":" + std::to_string(error.column) + ": " +
          error.reason);
    return std::nullopt;
}

/// "de_DE" before "de".
std::vector<std::string> withoutRegion(const std::string& language) {
    std::vector<std::string> names{language};
    const std::size_t region = language.find_first_of("_-");
    if (region != std::string::npos) names.push_back(language.substr(0, region));
    return names;
}

}  // namespace

NSBundle::NSBundle(std::string directory, std::vector<std::string> languages)
    : directory_(std::move(directory)), languages_(std::move(languages)) {}

NSBundle& NSBundle::bundleForClass() {
    std::shared_ptr<NSBundle>& bundle = mainBundle;
    if (!bundle) {
        bundle = std::make_shared<NSBundle>(desktop().resourceDirectory(),
                                            desktop().preferredLanguages());
    }
    return *bundle;
}

FileSystem& NSBundle::resourceFiles() {
    static PosixFileSystem files;
    return files;
}

std::optional<std::string> NSBundle::pathForResource_ofType(const std::string& name,
                                                            const std::string& type) const {
    const std::string file = "/" + name + (type.empty() ? "" : "." + type);
    for (const std::string& folder : languageFolders()) {
        if (auto path = existing(folder + file)) return path;
    }
    return existing(directory_ + file);
}

std::optional<std::string> NSBundle::pathForImageResource(const std::string& name) const {
    return existing(directory_ + "/images/" + name + ".png");
}

std::string NSBundle::localizedStringForKey_value_table(const std::string& key,
                                                        const std::string& value,
                                                        const std::string& table) const {
    const Strings& texts = strings(table.empty() ? "Localizable" : table);
    const auto found = texts.find(key);
    if (found != texts.end()) return found->second;
    return value.empty() ? key : value;
}

const NSBundle::Strings& NSBundle::strings(const std::string& table) const {
    const auto [known, isNew] = tables_.try_emplace(table);
    if (!isNew) return known->second;
    for (const std::string& folder : languageFolders()) {
        const auto read = tableFromFile(folder + "/" + table + ".strings");
        if (!read) continue;
        for (const auto& [key, text] : read->dictionary()->entries()) {
            if (text.string()) known->second[key] = *text.string();
        }
        break;
    }
    return known->second;
}

std::vector<std::string> NSBundle::languageFolders() const {
    std::vector<std::string> folders;
    for (const std::string& language : languages_) {
        for (const std::string& name : withoutRegion(language)) {
            folders.push_back(directory_ + "/" + name + ".lproj");
            if (name == "en") return folders;
        }
    }
    return folders;
}

std::string localized(const std::string& english) {
    return NSBundle::bundleForClass().localizedStringForKey_value_table(english);
}

}  // namespace velmora
