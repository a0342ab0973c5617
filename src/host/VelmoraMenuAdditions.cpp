#include "host/VelmoraMenuAdditions.h"

#include "gestures/VelmoraGestures.h"
#include "platform/runtime/Class.h"

namespace velmora {

namespace {

const Category category(NSMenu::classObject(), {methodFor<&velmoraPerformActionForItemAtIndex>(
                                                   "velmoraPerformActionForItemAtIndex:")});

}  // namespace

void velmoraPerformActionForItemAtIndex(NSMenu& menu, int index) {
    // The panel may take the item for a definition instead of having it run.
    static const Selector itemSelected = Selector::named("menu:itemSelected:");
    const auto gestures = VelmoraGestures::activeInstance();
    const Id panel = gestures ? gestures->ui() : nullptr;
    if (panel && message<bool(NSMenu&, int)>(*panel, itemSelected, menu, index)) return;
    // After the exchange, the platform's own implementation answers to our name.
    static const Selector platformPerform = Selector::named("velmoraPerformActionForItemAtIndex:");
    message<void(int)>(menu, platformPerform, index);
}

}  // namespace velmora
