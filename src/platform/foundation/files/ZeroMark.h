#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/foundation/files/PropertyList.h"

namespace velmora {

/// Stands for the character 0 in texts while the property-list library has them, which takes that
/// for a text's end: a code point that is no character, and that the document does not hold. In the
/// document itself the character is the reference "&#0;".
class ZeroMark {
public:
    /// For a document that is read; nothing when it needs none, or when every mark is taken.
    static std::optional<ZeroMark> forDocument(std::string_view xml);
    /// For a value that is written, likewise.
    static std::optional<ZeroMark> forValue(const PropertyList& value);

    /// The document with marks in place of the references, and the other way round.
    std::string hideReferences(std::string_view xml) const;
    std::string showReferences(std::string_view xml) const;

    /// The value with marks in place of the characters 0, in texts and keys, and the other way
    /// round.
    PropertyList hideZeros(const PropertyList& value) const;
    PropertyList showZeros(const PropertyList& value) const;

private:
    explicit ZeroMark(std::string text) : text_(std::move(text)) {}
    static std::optional<ZeroMark> missingIn(std::string_view texts);

    std::string text_;
};

}  // namespace velmora
