// Any bytes are read as a property list or refused; what was read is the same after it was written
// as XML and read again.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "platform/foundation/files/PropertyListFile.h"
#include "platform/foundation/files/PropertyListGuard.h"

namespace {

using namespace velmora;

bool isSameDate(double read, double again) {
    // The XML form holds seconds of the years 1 to 9999.
    constexpr double first = -63113904000.0;
    constexpr double last = 252423993599.0;
    return again == (std::isnan(read) ? 0 : std::floor(std::clamp(read, first, last)));
}

bool isSame(const PropertyList& read, const PropertyList& again) {
    if (const double* real = read.real(); real && std::isnan(*real)) {
        return again.real() && std::isnan(*again.real());
    }
    if (read.date()) return again.date() && isSameDate(read.date()->seconds, again.date()->seconds);
    if (const NSArray* array = read.array()) {
        return again.array() && std::equal(array->begin(), array->end(), again.array()->begin(),
                                           again.array()->end(), isSame);
    }
    if (const NSDictionary* dictionary = read.dictionary()) {
        if (!again.dictionary()) return false;
        const auto& entries = dictionary->entries();
        const auto& others = again.dictionary()->entries();
        return std::equal(entries.begin(), entries.end(), others.begin(), others.end(),
                          [](const auto& a, const auto& b) {
                              return a.first == b.first && isSame(a.second, b.second);
                          });
    }
    return read == again;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto read =
        propertyListFromData(std::string_view(reinterpret_cast<const char*>(data), size));
    if (!read) return 0;
    const std::string xml = xmlDataFromPropertyList(*read);
    // A small binary list may stand for a text that is larger than what is read.
    if (xml.size() > PropertyListLimits::fileSize) return 0;
    const auto again = propertyListFromData(xml);
    if (!again || !isSame(*read, *again)) std::abort();
    return 0;
}
