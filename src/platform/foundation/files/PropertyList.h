#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace velmora {

class PropertyList;

using NSArray = std::vector<PropertyList>;

/// Keys and values in the order in which they were read or set. Dictionaries of definition and
/// preference files are small, so a look-up is a walk.
class NSDictionary {
public:
    using Entry = std::pair<std::string, PropertyList>;

    NSDictionary();
    ~NSDictionary();
    NSDictionary(const NSDictionary&);
    NSDictionary(NSDictionary&&) noexcept;
    NSDictionary& operator=(const NSDictionary&);
    NSDictionary& operator=(NSDictionary&&) noexcept;

    /// The value of the first entry with this key, or null.
    const PropertyList* objectForKey(std::string_view key) const;
    PropertyList* objectForKey(std::string_view key);

    /// Replaces the value of the key, or appends the entry.
    void setObject_forKey(PropertyList value, std::string key);

    /// Appends without looking for the key, and returns the value, which stays in its place until
    /// the next change. A reader whose source may hold a key twice calls keepLastOfEachKey when it
    /// is through.
    PropertyList& append(std::string key, PropertyList value);
    void keepLastOfEachKey();

    void reserve(std::size_t count);
    std::size_t count() const;
    const std::vector<Entry>& entries() const { return entries_; }

    /// Whether both have the same keys with equal values, in whatever order. Keys must be unique.
    bool operator==(const NSDictionary& other) const;

private:
    bool hasUniqueKeysAtAGlance() const;

    std::vector<Entry> entries_;
};

/// One value of a property list. Strings are UTF-8; bytes that are none are kept as they are.
class PropertyList {
public:
    /// Seconds since 2001-01-01 00:00:00 UTC.
    struct Date {
        double seconds = 0;
        bool operator==(const Date&) const = default;
    };
    struct Data {
        std::string bytes;
        bool operator==(const Data&) const = default;
    };

    PropertyList() : value_(std::string()) {}
    PropertyList(std::string text) : value_(std::move(text)) {}
    PropertyList(const char* text) : value_(std::string(text)) {}
    PropertyList(bool flag) : value_(flag) {}
    PropertyList(std::int64_t number) : value_(number) {}
    PropertyList(int number) : value_(std::int64_t{number}) {}
    PropertyList(double number) : value_(number) {}
    PropertyList(Date date) : value_(date) {}
    PropertyList(Data data) : value_(std::move(data)) {}
    PropertyList(NSArray array) : value_(std::move(array)) {}
    PropertyList(NSDictionary dictionary) : value_(std::move(dictionary)) {}

    /// The value when it is of that type, else null.
    const std::string* string() const { return std::get_if<std::string>(&value_); }
    std::string* string() { return std::get_if<std::string>(&value_); }
    const bool* boolean() const { return std::get_if<bool>(&value_); }
    const std::int64_t* integer() const { return std::get_if<std::int64_t>(&value_); }
    const double* real() const { return std::get_if<double>(&value_); }
    const Date* date() const { return std::get_if<Date>(&value_); }
    const Data* data() const { return std::get_if<Data>(&value_); }
    const NSArray* array() const { return std::get_if<NSArray>(&value_); }
    NSArray* array() { return std::get_if<NSArray>(&value_); }
    const NSDictionary* dictionary() const { return std::get_if<NSDictionary>(&value_); }
    NSDictionary* dictionary() { return std::get_if<NSDictionary>(&value_); }

    /// The lenient readings of a number or a text, whatever the host's locale is. A real is
    /// truncated toward zero, a text is read as far as it is a decimal number (none: 0), and what
    /// does not fit is clamped. Nothing for the other types.
    std::optional<std::int32_t> intValue() const;
    std::optional<double> doubleValue() const;

    /// A number is true unless it is 0. A text is true when, after blanks, a sign and zeros, it
    /// goes on with a digit from 1 to 9 or with Y, y, T or t. Nothing for the other types.
    std::optional<bool> boolValue() const;

    bool operator==(const PropertyList& other) const = default;

private:
    std::variant<std::string, bool, std::int64_t, double, Date, Data, NSArray, NSDictionary> value_;
};

}  // namespace velmora
