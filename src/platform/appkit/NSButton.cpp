#include "platform/appkit/NSButton.h"

#include "platform/runtime/Class.h"

namespace velmora {

namespace {

[[maybe_unused]] const Class& registered = NSButton::classObject();

}  // namespace

Class& NSButton::classObject() {
    static auto* object = &(new Class("NSButton", &NSControl::classObject()))->makes<NSButton>();
    return *object;
}

void NSButton::setTitle(std::string title) {
    buttonCell().setTitle(std::move(title));
    setNeedsDisplay();
}

void NSButton::setImage(NSImageRef image) {
    buttonCell().setImage(std::move(image));
    setNeedsDisplay();
}

void NSButton::setImageSize(NSSize size) {
    buttonCell().setImageSize(size);
    setNeedsDisplay();
}

void NSButton::setImagePosition(NSCellImagePosition position) {
    buttonCell().setImagePosition(position);
    setNeedsDisplay();
}

}  // namespace velmora
