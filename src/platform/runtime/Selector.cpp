#include "platform/runtime/Selector.h"

#include <unordered_set>

namespace velmora {

Selector Selector::named(std::string_view name) {
    Selector selector;
    if (!name.empty()) {
        // Names live as long as the process: selectors are held in tables and globals everywhere.
        static auto* names = new std::unordered_set<std::string>();
        selector.name_ = &*names->emplace(name).first;
    }
    return selector;
}

const std::string& Selector::name() const {
    static const std::string none;
    return name_ ? *name_ : none;
}

}  // namespace velmora
