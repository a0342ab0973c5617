#include "platform/port/Desktop.h"

#include <cassert>

#include "platform/runtime/NSLog.h"
#include "platform/runtime/ProcessWide.h"

namespace velmora {

namespace {

ProcessWide<Desktop*> current(nullptr);

}  // namespace

Desktop& desktop() {
    assert(*current);
    return **current;
}

Desktop* currentDesktop() {
    return *current;
}

void setDesktop(Desktop* desktop) {
    current = desktop;
    setLogReceiver(desktop);
}

}  // namespace velmora
