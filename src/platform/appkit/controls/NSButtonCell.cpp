#include "platform/appkit/controls/NSButtonCell.h"

#include "platform/runtime/Class.h"

namespace velmora {

Class& NSButtonCell::classObject() {
    static auto* object = new Class("NSButtonCell", &NSActionCell::classObject());
    return *object;
}

void NSButtonCell::setTitle(std::string title) {
    title_ = std::move(title);
    changed();
}

void NSButtonCell::setButtonType(NSButtonType type) {
    buttonType_ = type;
    changed();
}

void NSButtonCell::setAlternateImage(NSImageRef image) {
    alternateImage_ = std::move(image);
    changed();
}

void NSButtonCell::setShowsStateBy(int mask) {
    showsStateBy_ = mask;
    changed();
}

const NSImageRef& NSButtonCell::shownImage() const {
    return state() != NSOffState && alternateImage_ ? alternateImage_ : image();
}

void NSButtonCell::setImagePosition(NSCellImagePosition position) {
    imagePosition_ = position;
    changed();
}

void NSButtonCell::setTransparent(bool transparent) {
    transparent_ = transparent;
    changed();
}

void NSButtonCell::setKeyEquivalent(std::string key) {
    keyEquivalent_ = std::move(key);
    changed();
}

void NSButtonCell::setNextState() {
    if (buttonType_ == NSSwitchButton) setState(state() == NSOffState ? NSOnState : NSOffState);
}

void NSButtonCell::setObjectValue(const ObjectValue& value) {
    const PropertyList* number = propertyListOf(value);
    setState(number && number->intValue().value_or(0) != 0 ? NSOnState : NSOffState);
}

}  // namespace velmora
