#include "panels/VelmoraGlobalFlagCell.h"

#include "platform/runtime/Class.h"
#include "platform/runtime/ProcessWide.h"

namespace velmora {

namespace {

constexpr float roomForLargeGlobe = 22;

ProcessWide<NSImageRef> large;
ProcessWide<NSImageRef> small;

NSImageRef loaded(NSImageRef& image, const char* name) {
    if (!image) image = NSImage::initWithResource(name);
    return image;
}

}  // namespace

Class& VelmoraGlobalFlagCell::classObject() {
    static auto* object = new Class("VelmoraGlobalFlagCell", &NSButtonCell::classObject());
    return *object;
}

NSImageRef VelmoraGlobalFlagCell::onImage() {
    return loaded(*large, "Globe");
}

NSImageRef VelmoraGlobalFlagCell::onImageSmall() {
    return loaded(*small, "GlobeSmall");
}

void VelmoraGlobalFlagCell::init() {
    setButtonType(NSSwitchButton);
    setImagePosition(NSImageOnly);
    setImage(offImage());
    setAlternateImage(onImage());
    setShowsStateBy(NSContentsCellMask);
}

void VelmoraGlobalFlagCell::setObjectValue(const ObjectValue& value) {
    const PropertyList* number = propertyListOf(value);
    if (!number || number->string()) return;
    if (const auto flag = number->boolValue()) {
        setState(*flag ? NSOnState : NSOffState);
    } else if (const auto state = number->intValue()) {
        setState(*state);
    }
}

void VelmoraGlobalFlagCell::drawInteriorWithFrame_inView(NSRect frame, NSView* view) {
    const bool isRoomy =
        frame.size.width >= roomForLargeGlobe && frame.size.height >= roomForLargeGlobe;
    setAlternateImage(isRoomy ? onImage() : onImageSmall());
    NSButtonCell::drawInteriorWithFrame_inView(frame, view);
}

}  // namespace velmora
