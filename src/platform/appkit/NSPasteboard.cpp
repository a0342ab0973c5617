#include "platform/appkit/NSPasteboard.h"

#include <algorithm>

#include "platform/runtime/Class.h"

namespace velmora {

Class& NSPasteboard::classObject() {
    static auto* object = new Class("NSPasteboard", &NSObject::classObject());
    return *object;
}

Class& NSDraggingInfo::classObject() {
    static auto* object = new Class("NSDraggingInfo", &NSObject::classObject());
    return *object;
}

void NSPasteboard::declareTypes_owner(std::vector<std::string> types, const Id& /*owner*/) {
    types_ = std::move(types);
    values_.clear();
}

bool NSPasteboard::setPropertyList_forType(PropertyList value, const std::string& type) {
    if (std::find(types_.begin(), types_.end(), type) == types_.end()) return false;
    std::erase_if(values_, [&](const auto& entry) { return entry.first == type; });
    values_.emplace_back(type, std::move(value));
    return true;
}

const PropertyList* NSPasteboard::propertyListForType(const std::string& type) const {
    const auto found = std::find_if(values_.begin(), values_.end(),
                                    [&](const auto& entry) { return entry.first == type; });
    return found == values_.end() ? nullptr : &found->second;
}

}  // namespace velmora
