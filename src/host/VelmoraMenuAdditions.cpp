#include "host/VelmoraMenuAdditions.h"

#include "platform/runtime/Class.h"

namespace velmora {

namespace {

const Category category(NSMenu::classObject(), {methodFor<&velmoraPerformActionForItemAtIndex>(
                                                   "velmoraPerformActionForItemAtIndex:")});

}  // namespace

void velmoraPerformActionForItemAtIndex(NSMenu& menu, int index) {
    // After the exchange, the platform's own implementation answers to our name.
    static const Selector platformPerform = Selector::named("velmoraPerformActionForItemAtIndex:");
    message<void(int)>(menu, platformPerform, index);
}

}  // namespace velmora
