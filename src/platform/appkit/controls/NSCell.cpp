#include "platform/appkit/controls/NSCell.h"

#include "platform/appkit/controls/NSControl.h"
#include "platform/runtime/Class.h"

namespace velmora {

Class& NSCell::classObject() {
    static auto* object = new Class("NSCell", &NSObject::classObject());
    return *object;
}

Class& NSFormatter::classObject() {
    static auto* object = new Class("NSFormatter", &NSObject::classObject());
    return *object;
}

void NSCell::changed() {
    if (controlView_) controlView_->updateCell();
}

void NSCell::setObjectValue(const ObjectValue& value) {
    value_ = value;
    stringValue_ =
        formatter_ ? formatter_->stringForObjectValue(propertyListOf(value)) : textOf(value);
    changed();
}

void NSCell::setStringValue(std::string value) {
    value_ = PropertyList(value);
    stringValue_ = std::move(value);
    changed();
}

std::string NSCell::spokenValue() const {
    return formatter_ ? formatter_->spokenStringForObjectValue(propertyListOf(value_))
                      : stringValue_;
}

int NSCell::intValue() const {
    const PropertyList* value = propertyListOf(value_);
    return value ? value->intValue().value_or(0) : 0;
}

double NSCell::doubleValue() const {
    const PropertyList* value = propertyListOf(value_);
    return value ? value->doubleValue().value_or(0) : 0;
}

void NSCell::setState(int state) {
    state_ = state;
    changed();
}

void NSCell::setEnabled(bool enabled) {
    enabled_ = enabled;
    changed();
}

void NSCell::setImage(NSImageRef image) {
    image_ = std::move(image);
    changed();
}

void NSCell::setImageSize(NSSize size) {
    imageSize_ = size;
    changed();
}

void NSCell::setFont(NSFont font) {
    font_ = font;
    changed();
}

void NSCell::setAlignment(NSTextAlignment alignment) {
    alignment_ = alignment;
    changed();
}

void NSCell::setControlSize(NSControlSize size) {
    controlSize_ = size;
    changed();
}

void NSCell::setBordered(bool bordered) {
    bordered_ = bordered;
    changed();
}

void NSCell::setFormatter(NSFormatterRef formatter) {
    formatter_ = std::move(formatter);
    if (!formatter_) return changed();
    stringValue_ = formatter_->stringForObjectValue(propertyListOf(value_));
    changed();
}

}  // namespace velmora
