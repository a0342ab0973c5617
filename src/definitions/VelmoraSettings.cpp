#include "definitions/VelmoraSettings.h"

#include <algorithm>
#include <iterator>

#include "platform/foundation/SettingsFiles.h"
#include "platform/port/Desktop.h"
#include "platform/runtime/Class.h"
#include "platform/runtime/NSLog.h"

namespace velmora {

namespace {

NSArray dictionariesOf(const std::vector<VelmoraSettingRef>& records, bool globalOnly) {
    NSArray array;
    array.reserve(records.size());
    for (const VelmoraSettingRef& record : records) {
        if (!globalOnly || record->isGlobal()) array.emplace_back(record->dictionary());
    }
    return array;
}

}  // namespace

Class& VelmoraSettings::classObject() {
    static auto* object = new Class("VelmoraSettings", &NSObject::classObject());
    return *object;
}

bool VelmoraSettings::initWithContentsOfFile_forceGlobal(const std::optional<std::string>& path,
                                                         bool forceGlobal) {
    settings_.clear();
    settings_.reserve(16);
    settingsBackup_.reset();
    globalChanged_ = false;
    if (!path) return true;
    SettingsFiles::Reading reading = SettingsFiles::ofProcess().read(desktop().files(), *path);
    NSArray* array = reading.array();
    if (!array) return !reading.failed;
    settings_.reserve(array->size());
    for (PropertyList& element : *array) {
        if (NSDictionary* dictionary = element.dictionary()) {
            settings_.push_back(
                VelmoraSetting::newWithDictionary_forceGlobal(std::move(*dictionary), forceGlobal));
        }
    }
    return true;
}

void VelmoraSettings::createBackup() {
    settingsBackup_.emplace();
    settingsBackup_->reserve(settings_.size());
    for (const VelmoraSettingRef& record : settings_) {
        settingsBackup_->push_back(record->copyWithZone());
    }
}

void VelmoraSettings::deleteBackup() {
    settingsBackup_.reset();
}

bool VelmoraSettings::revert() {
    if (!settingsBackup_) return false;
    settings_ = std::move(*settingsBackup_);
    settingsBackup_.reset();
    globalChanged_ = false;
    return true;
}

void VelmoraSettings::addObject() {
    settings_.push_back(VelmoraSetting::newSetting());
}

void VelmoraSettings::addObjectsFromArray(std::vector<VelmoraSettingRef> records) {
    settings_.insert(settings_.end(), std::make_move_iterator(records.begin()),
                     std::make_move_iterator(records.end()));
}

VelmoraSettingRef VelmoraSettings::objectAtIndex(std::int64_t index) const {
    const auto position = static_cast<std::uint64_t>(index);
    return position < settings_.size() ? settings_[position] : nullptr;
}

void VelmoraSettings::setObject_forKey_atIndex(const PropertyList* value, std::string_view key,
                                               std::int64_t index) {
    if (const VelmoraSettingRef record = objectAtIndex(index)) {
        globalChanged_ |= record->setObject_forKey(value, key);
    }
}

void VelmoraSettings::setObject_forKey_atIndex(const Id& menuItem, std::string_view key,
                                               std::int64_t index) {
    if (const VelmoraSettingRef record = objectAtIndex(index)) {
        globalChanged_ |= record->setObject_forKey(menuItem, key);
    }
}

void VelmoraSettings::removeObjectAtIndex(std::int64_t index) {
    const VelmoraSettingRef record = objectAtIndex(index);
    if (!record) return;
    globalChanged_ |= record->isGlobal();
    settings_.erase(settings_.begin() + index);
}

void VelmoraSettings::removeObject(const VelmoraSetting& record) {
    globalChanged_ |= record.isGlobal();
    std::erase_if(settings_, [&](const VelmoraSettingRef& own) { return own.get() == &record; });
}

void VelmoraSettings::removeObjectsWhere(
    const std::function<bool(const VelmoraSetting&)>& unwanted) {
    std::vector<VelmoraSettingRef> kept;
    kept.reserve(settings_.size());
    for (auto own = settings_.rbegin(); own != settings_.rend(); ++own) {
        if (unwanted(**own)) {
            globalChanged_ |= (*own)->isGlobal();
        } else {
            kept.push_back(*own);
        }
    }
    std::reverse(kept.begin(), kept.end());
    settings_ = std::move(kept);
}

VelmoraSettingRef VelmoraSettings::objectEqualTo(const VelmoraSetting& record) const {
    for (const VelmoraSettingRef& own : settings_) {
        if (own->isEqualTo(record)) return own;
    }
    return nullptr;
}

void VelmoraSettings::keepVersion(const std::vector<VelmoraSettingRef>& records,
                                  const std::string& path) {
    SettingsFiles::ofProcess().keepVersion(desktop().files(), dictionariesOf(records, false), path);
}

void VelmoraSettings::saveSettingsWithGlobalFlag_toFile(bool globalOnly,
                                                        const std::string& path) const {
    if (!SettingsFiles::ofProcess().write(desktop().files(), dictionariesOf(settings_, globalOnly),
                                          path)) {
        NSLog("Failed to write '" + path + "'!");
    }
}

}  // namespace velmora
