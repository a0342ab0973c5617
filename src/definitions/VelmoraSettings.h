#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "definitions/VelmoraSetting.h"

namespace velmora {

/// The ordered definitions of one component, with one backup for the time in which a panel edits
/// them, and the flag that says whether an edit touched the shared ones.
class VelmoraSettings final : public NSObject {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// Reads a definition file; without a path, or when the file is missing, unreadable or no
    /// array, the list is empty. Elements that are no dictionaries are passed over. False, with an
    /// empty list, when the state of the machine is in the way and the file may well hold records.
    bool initWithContentsOfFile_forceGlobal(const std::optional<std::string>& path,
                                            bool forceGlobal);

    /// Copies every record aside, in place of an earlier backup.
    void createBackup();
    void deleteBackup();
    /// Brings the backup back as the list and clears globalChanged. False without a backup.
    bool revert();

    bool globalChanged() const { return globalChanged_; }
    void setGlobalChanged(bool changed) { globalChanged_ = changed; }

    int count() const { return static_cast<int>(settings_.size()); }
    /// The live list itself.
    std::vector<VelmoraSettingRef>& array() { return settings_; }

    /// Appends a new empty record.
    void addObject();
    void addObjectsFromArray(std::vector<VelmoraSettingRef> records);

    /// Null when the index, taken as unsigned, is not below count.
    VelmoraSettingRef objectAtIndex(std::int64_t index) const;

    /// Edit and remove records that exist; an index that does not is ignored. Both keep
    /// globalChanged.
    void setObject_forKey_atIndex(const PropertyList* value, std::string_view key,
                                  std::int64_t index);
    void setObject_forKey_atIndex(const Id& menuItem, std::string_view key, std::int64_t index);
    void removeObjectAtIndex(std::int64_t index);

    /// Removes that very record, not an equal one.
    void removeObject(const VelmoraSetting& record);

    /// Removes every record of which the function says so, asked from the last to the first, as
    /// removeObjectAtIndex would, in one pass.
    void removeObjectsWhere(const std::function<bool(const VelmoraSetting&)>& unwanted);

    /// The first record that is equal in content, or null.
    VelmoraSettingRef objectEqualTo(const VelmoraSetting& record) const;

    /// Writes the records, with the flag the global ones only. A failure is a line in the log and
    /// changes nothing.
    void saveSettingsWithGlobalFlag_toFile(bool globalOnly, const std::string& path) const;

    /// Adds a list that was not written to the file to the file's history.
    static void keepVersion(const std::vector<VelmoraSettingRef>& records, const std::string& path);

private:
    std::vector<VelmoraSettingRef> settings_;
    std::optional<std::vector<VelmoraSettingRef>> settingsBackup_;
    bool globalChanged_ = false;
};

}  // namespace velmora
