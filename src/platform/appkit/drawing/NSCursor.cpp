#include "platform/appkit/drawing/NSCursor.h"

#include "platform/port/Desktop.h"
#include "platform/runtime/Class.h"

namespace velmora {

namespace {

ProcessWide<std::vector<NSCursorRef>> pushed;

}  // namespace

Class& NSCursor::classObject() {
    static auto* object = new Class("NSCursor", &NSObject::classObject());
    return *object;
}

void NSCursor::push() {
    pushed->push_back(std::static_pointer_cast<NSCursor>(shared_from_this()));
    desktop().showCursor(this);
}

void NSCursor::pop() {
    if (pushed->empty()) return;
    pushed->pop_back();
    desktop().showCursor(pushed->empty() ? nullptr : pushed->back().get());
}

}  // namespace velmora
