#include "platform/appkit/drawing/NSGraphicsContext.h"

#include <utility>

namespace velmora {

namespace {

NSGraphicsContext* current = nullptr;

}  // namespace

NSGraphicsContext* NSGraphicsContext::currentContext() {
    return current;
}

NSGraphicsContext::Current::Current(NSGraphicsContext& context)
    : before_(std::exchange(current, &context)) {}

NSGraphicsContext::Current::~Current() {
    current = before_;
}

void NSRectFill(NSRect rect) {
    if (current) current->fill(rect);
}

void NSColor::set() const {
    if (current) current->setColor(*this);
}

void NSAffineTransform::set() const {
    if (current) current->setTransform(*this);
}

void NSAffineTransform::translateXBy_yBy(float x, float y) {
    const NSPoint moved = transformPoint({x, y});
    tX = moved.x;
    tY = moved.y;
}

void NSAffineTransform::scaleXBy_yBy(float x, float y) {
    m11 *= x;
    m12 *= x;
    m21 *= y;
    m22 *= y;
}

}  // namespace velmora
