#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/files/PropertyList.h"
#include "platform/runtime/NSObject.h"

namespace velmora {

/// One definition: which menu command runs, and what fires it. The trigger's meaning is the
/// component's. A global definition belongs to the set that all applications share.
///
/// Each setter says whether the change touches the shared definitions.
class VelmoraSetting final : public NSObject {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    static std::shared_ptr<VelmoraSetting> newSetting();
    static std::shared_ptr<VelmoraSetting> newWithDictionary_forceGlobal(NSDictionary dictionary,
                                                                         bool forceGlobal);

    /// Strings unset, local.
    void init();
    /// Takes the four keys; a key that is absent, or whose string is none, leaves its field unset.
    void initWithDictionary_forceGlobal(NSDictionary dictionary, bool forceGlobal);

    std::shared_ptr<VelmoraSetting> copyWithZone() const;

    /// The four keys, unset strings as "".
    NSDictionary dictionary() const;

    /// The value of one of the four keys; nothing for any other.
    std::optional<PropertyList> objectForKey(std::string_view key) const;

    /// Sets the field of one of the four keys; null unsets it. Any other key changes nothing.
    bool setObject_forKey(const PropertyList* value, std::string_view key);
    /// Sets the value from a menu item, which only "Path" takes.
    bool setObject_forKey(const Id& menuItem, std::string_view key);

    /// "" when unset.
    const std::string& path() const;
    const std::string& trigger() const;
    const std::string& selector() const;
    bool isGlobal() const { return isGlobal_; }

    bool setPath(std::optional<std::string> path);
    /// Takes path and selector from an item of a copied menu whose represented object is the
    /// application's own item. An object that is no such item unsets the path.
    bool setPath(const Id& menuItem);
    bool setTrigger(std::optional<std::string> trigger);
    bool setSelector(std::optional<std::string> selector);
    bool setIsGlobal(bool isGlobal);

    /// Equal in path, trigger and selector; the scope does not count.
    bool isEqualTo(const VelmoraSetting& other) const;

private:
    bool replace(std::optional<std::string>& field, std::optional<std::string> value);
    std::optional<std::string>* fieldForKey(std::string_view key);

    std::optional<std::string> path_;
    std::optional<std::string> trigger_;
    std::optional<std::string> selector_;
    bool isGlobal_ = false;
};

using VelmoraSettingRef = std::shared_ptr<VelmoraSetting>;

}  // namespace velmora
