#include "platform/appkit/controls/NSTextFieldCell.h"

#include "platform/runtime/Class.h"

namespace velmora {

Class& NSTextFieldCell::classObject() {
    static auto* object = new Class("NSTextFieldCell", &NSActionCell::classObject());
    return *object;
}

void NSTextFieldCell::setTextColor(NSColor color) {
    textColor_ = color;
    changed();
}

void NSTextFieldCell::setBackgroundColor(NSColor color) {
    backgroundColor_ = color;
    changed();
}

void NSTextFieldCell::setDrawsBackground(bool draws) {
    drawsBackground_ = draws;
    changed();
}

}  // namespace velmora
