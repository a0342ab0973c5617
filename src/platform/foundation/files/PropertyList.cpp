#include "platform/foundation/files/PropertyList.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <numeric>

namespace velmora {

namespace {

bool isBlank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// Takes blanks and a sign off the front; returns whether the sign was a minus.
bool takeSign(std::string_view& text) {
    while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
    if (text.empty() || (text.front() != '-' && text.front() != '+')) return false;
    const bool negative = text.front() == '-';
    text.remove_prefix(1);
    return negative;
}

std::int32_t clampedToInt32(double number) {
    using Limits = std::numeric_limits<std::int32_t>;
    if (std::isnan(number)) return 0;
    if (number >= Limits::max()) return Limits::max();
    if (number <= Limits::min()) return Limits::min();
    return static_cast<std::int32_t>(number);
}

std::int32_t intFromText(std::string_view text) {
    const std::int64_t sign = takeSign(text) ? -1 : 1;
    constexpr std::int64_t tooBig = std::int64_t{1} << 31U;
    std::int64_t number = 0;
    for (; !text.empty() && isDigit(text.front()); text.remove_prefix(1)) {
        number = std::min(tooBig, number * 10 + (text.front() - '0'));
    }
    using Limits = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(std::min<std::int64_t>(sign * number, Limits::max()));
}

/// Whether a number that a double cannot hold is too great, rather than too near to zero.
bool isTooGreat(std::string_view number) {
    const std::size_t e = std::min(number.find_first_of("eE"), number.size());
    const std::string_view mantissa = number.substr(0, e);
    const auto point = static_cast<std::int64_t>(std::min(mantissa.find('.'), e));
    const auto first = static_cast<std::int64_t>(mantissa.find_first_of("123456789"));
    std::string_view digits = number.substr(std::min(e + 1, number.size()));
    const bool negative = takeSign(digits);
    std::int64_t exponent = 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), exponent);
    if (error == std::errc::result_out_of_range) return !negative;
    return (negative ? -exponent : exponent) > first - point;
}

double doubleFromText(std::string_view text) {
    const bool negative = takeSign(text);
    // The library would take "inf" and "nan" too, which are no decimal numbers.
    if (text.empty() || (!isDigit(text.front()) && text.front() != '.')) return 0;
    double number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error == std::errc::result_out_of_range) {
        const auto length = static_cast<std::size_t>(end - text.data());
        number = isTooGreat(text.substr(0, length)) ? std::numeric_limits<double>::max() : 0;
    }
    return negative ? -number : number;
}

bool boolFromText(std::string_view text) {
    takeSign(text);
    while (!text.empty() && text.front() == '0') text.remove_prefix(1);
    return !text.empty() && std::string_view("YyTt123456789").find(text.front()) != text.npos;
}

}  // namespace

NSDictionary::NSDictionary() = default;
NSDictionary::~NSDictionary() = default;
NSDictionary::NSDictionary(const NSDictionary&) = default;
NSDictionary::NSDictionary(NSDictionary&&) noexcept = default;
NSDictionary& NSDictionary::operator=(const NSDictionary&) = default;
NSDictionary& NSDictionary::operator=(NSDictionary&&) noexcept = default;

const PropertyList* NSDictionary::objectForKey(std::string_view key) const {
    for (const Entry& entry : entries_) {
        if (entry.first == key) return &entry.second;
    }
    return nullptr;
}

PropertyList* NSDictionary::objectForKey(std::string_view key) {
    return const_cast<PropertyList*>(std::as_const(*this).objectForKey(key));
}

void NSDictionary::setObject_forKey(PropertyList value, std::string key) {
    if (PropertyList* present = objectForKey(key)) {
        *present = std::move(value);
    } else {
        append(std::move(key), std::move(value));
    }
}

PropertyList& NSDictionary::append(std::string key, PropertyList value) {
    return entries_.emplace_back(std::move(key), std::move(value)).second;
}

bool NSDictionary::hasUniqueKeysAtAGlance() const {
    constexpr std::size_t few = 16;
    if (entries_.size() > few) return false;
    for (auto entry = entries_.begin(); entry != entries_.end(); ++entry) {
        if (std::any_of(entries_.begin(), entry,
                        [entry](const Entry& earlier) { return earlier.first == entry->first; })) {
            return false;
        }
    }
    return true;
}

void NSDictionary::keepLastOfEachKey() {
    if (hasUniqueKeysAtAGlance()) return;
    std::vector<std::size_t> byKey(entries_.size());
    std::iota(byKey.begin(), byKey.end(), std::size_t{0});
    std::stable_sort(byKey.begin(), byKey.end(), [this](std::size_t a, std::size_t b) {
        return entries_[a].first < entries_[b].first;
    });
    std::vector<bool> dropped(entries_.size());
    bool anyDropped = false;
    for (std::size_t i = 0, next = 0; i < byKey.size(); i = next) {
        const std::size_t first = byKey[i];
        next = i + 1;
        for (; next < byKey.size() && entries_[byKey[next]].first == entries_[first].first;
             ++next) {
            entries_[first].second = std::move(entries_[byKey[next]].second);
            dropped[byKey[next]] = anyDropped = true;
        }
    }
    if (!anyDropped) return;
    std::size_t kept = 0;
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        if (dropped[i]) continue;
        if (kept != i) entries_[kept] = std::move(entries_[i]);
        ++kept;
    }
    entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(kept), entries_.end());
}

void NSDictionary::reserve(std::size_t count) {
    entries_.reserve(count);
}

std::size_t NSDictionary::count() const {
    return entries_.size();
}

bool NSDictionary::operator==(const NSDictionary& other) const {
    if (entries_.size() != other.entries_.size()) return false;
    const auto sorted = [](const NSDictionary& dictionary) {
        std::vector<const Entry*> entries;
        entries.reserve(dictionary.entries_.size());
        for (const Entry& entry : dictionary.entries_) entries.push_back(&entry);
        std::sort(entries.begin(), entries.end(),
                  [](const Entry* a, const Entry* b) { return a->first < b->first; });
        return entries;
    };
    const auto mine = sorted(*this);
    const auto theirs = sorted(other);
    return std::equal(mine.begin(), mine.end(), theirs.begin(),
                      [](const Entry* a, const Entry* b) { return *a == *b; });
}

std::optional<std::int32_t> PropertyList::intValue() const {
    if (const bool* flag = boolean()) return *flag ? 1 : 0;
    if (const double* number = real()) return clampedToInt32(*number);
    if (const std::string* text = string()) return intFromText(*text);
    if (const std::int64_t* number = integer()) {
        using Limits = std::numeric_limits<std::int32_t>;
        return static_cast<std::int32_t>(
            std::clamp<std::int64_t>(*number, Limits::min(), Limits::max()));
    }
    return std::nullopt;
}

std::optional<double> PropertyList::doubleValue() const {
    if (const bool* flag = boolean()) return *flag ? 1 : 0;
    if (const double* number = real()) return *number;
    if (const std::int64_t* number = integer()) return static_cast<double>(*number);
    if (const std::string* text = string()) return doubleFromText(*text);
    return std::nullopt;
}

std::optional<bool> PropertyList::boolValue() const {
    if (const bool* flag = boolean()) return *flag;
    if (const double* number = real()) return *number != 0;
    if (const std::int64_t* number = integer()) return *number != 0;
    if (const std::string* text = string()) return boolFromText(*text);
    return std::nullopt;
}

}  // namespace velmora
