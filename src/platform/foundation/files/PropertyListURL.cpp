#include "platform/foundation/files/PropertyListURL.h"

#include "platform/foundation/files/PropertyListFile.h"
#include "platform/port/Desktop.h"

namespace velmora {

std::optional<NSDictionary> dictionaryWithContentsOfURL(const std::string& address) {
    constexpr std::size_t mostBytes = 1U << 20U;
    const std::optional<std::string> answer = desktop().fetch(address, mostBytes);
    const std::optional<PropertyList> list = answer ? propertyListFromData(*answer) : std::nullopt;
    const NSDictionary* root = list ? list->dictionary() : nullptr;
    return root ? std::optional(*root) : std::nullopt;
}

}  // namespace velmora
