#include "platform/appkit/controls/ObjectValue.h"

#include <array>
#include <charconv>

namespace velmora {

namespace {

/// Whatever the host's locale is.
template <class Number>
std::string decimal(Number number) {
    std::array<char, 64> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    return {digits.data(), end.ptr};
}

}  // namespace

const PropertyList* propertyListOf(const ObjectValue& value) {
    return std::get_if<PropertyList>(&value);
}

Id objectOf(const ObjectValue& value) {
    const Id* object = std::get_if<Id>(&value);
    return object ? *object : nullptr;
}

std::string textOf(const ObjectValue& value) {
    const PropertyList* list = propertyListOf(value);
    if (!list) return {};
    if (const std::string* text = list->string()) return *text;
    if (const bool* flag = list->boolean()) return *flag ? "1" : "0";
    if (const std::int64_t* integer = list->integer()) return decimal(*integer);
    if (const double* real = list->real()) return decimal(*real);
    return {};
}

}  // namespace velmora
