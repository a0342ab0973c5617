#pragma once

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/files/PropertyList.h"

namespace velmora {

/// Why and where an interface file is malformed. `place` names what is wrong by its keys, as in
/// objects.vmMenu.items[2].action.
struct InterfaceError {
    std::string place;
    std::string reason;
};

/// The description of one object of an interface file, read key by key. What does not fit throws an
/// InterfaceError, which InterfaceFile catches.
class InterfaceDescription {
public:
    /// Throws when the value is no dictionary.
    InterfaceDescription(const PropertyList* value, std::string place);

    const std::string& place() const { return place_; }

    bool has(std::string_view key);
    /// "" without the key.
    std::string text(std::string_view key);
    bool flag(std::string_view key, bool otherwise);
    std::optional<double> number(std::string_view key, double least, double greatest);
    int integer(std::string_view key, int least, int greatest, int otherwise);
    /// Empty without the key.
    std::vector<std::string> texts(std::string_view key);
    /// Throws without the key.
    const NSArray& array(std::string_view key);

    /// Throws when there is a key that nobody has read: a misspelled one.
    void end() const;
    [[noreturn]] void fail(std::string_view key, std::string reason) const;

private:
    const PropertyList* value(std::string_view key);

    const NSDictionary* dictionary_;
    std::string place_;
    std::set<std::string, std::less<>> read_;
};

}  // namespace velmora
