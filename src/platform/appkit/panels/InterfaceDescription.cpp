#include "platform/appkit/panels/InterfaceDescription.h"

#include <cmath>

namespace velmora {

InterfaceDescription::InterfaceDescription(const PropertyList* value, std::string place)
    : dictionary_(value ? value->dictionary() : nullptr), place_(std::move(place)) {
    if (!dictionary_) throw InterfaceError{place_, "no dictionary"};
}

void InterfaceDescription::fail(std::string_view key, std::string reason) const {
    throw InterfaceError{place_ + "." + std::string(key), std::move(reason)};
}

const PropertyList* InterfaceDescription::value(std::string_view key) {
    read_.emplace(key);
    return dictionary_->objectForKey(key);
}

bool InterfaceDescription::has(std::string_view key) {
    return value(key) != nullptr;
}

std::string InterfaceDescription::text(std::string_view key) {
    const PropertyList* found = value(key);
    if (!found) return {};
    if (!found->string()) fail(key, "no text");
    return *found->string();
}

bool InterfaceDescription::flag(std::string_view key, bool otherwise) {
    const PropertyList* found = value(key);
    if (!found) return otherwise;
    const std::optional<bool> flag = found->boolValue();
    if (!flag) fail(key, "neither YES nor NO");
    return *flag;
}

std::optional<double> InterfaceDescription::number(std::string_view key, double least,
                                                   double greatest) {
    const PropertyList* found = value(key);
    if (!found) return std::nullopt;
    const std::optional<double> number = found->doubleValue();
    if (number && *number >= least && *number <= greatest) return number;
    const auto shown = [](double limit) { return std::to_string(std::lround(limit)); };
    fail(key, "no number from " + shown(least) + " to " + shown(greatest));
}

int InterfaceDescription::integer(std::string_view key, int least, int greatest, int otherwise) {
    return static_cast<int>(number(key, least, greatest).value_or(otherwise));
}

std::vector<std::string> InterfaceDescription::texts(std::string_view key) {
    std::vector<std::string> found;
    if (!has(key)) return found;
    for (const PropertyList& element : array(key)) {
        if (!element.string()) fail(key, "not only texts");
        found.push_back(*element.string());
    }
    return found;
}

const NSArray& InterfaceDescription::array(std::string_view key) {
    const PropertyList* found = value(key);
    if (!found || !found->array()) fail(key, "no array");
    return *found->array();
}

void InterfaceDescription::end() const {
    for (const auto& [key, unused] : dictionary_->entries()) {
        if (read_.find(key) == read_.end()) fail(key, "unknown key");
    }
}

}  // namespace velmora
