#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace velmora {

/// The interned name of a message. Two selectors of one name are equal, and comparing them compares
/// pointers. The null selector stands for none.
class Selector {
public:
    constexpr Selector() = default;

    /// The selector of that name; the null selector for an empty name.
    static Selector named(std::string_view name);

    /// The name, colons included; "" for the null selector.
    const std::string& name() const;

    constexpr explicit operator bool() const { return name_ != nullptr; }
    friend constexpr bool operator==(Selector, Selector) = default;

    std::size_t hash() const { return std::hash<const void*>()(name_); }

private:
    const std::string* name_ = nullptr;
};

/// The platform's two spellings of the same.
inline Selector NSSelectorFromString(std::string_view name) {
    return Selector::named(name);
}
inline const std::string& NSStringFromSelector(Selector selector) {
    return selector.name();
}

}  // namespace velmora
