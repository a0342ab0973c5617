#include "platform/headless/input/HeadlessUser.h"

#include <algorithm>
#include <exception>

#include "platform/appkit/NSApplication.h"
#include "platform/appkit/NSMenu.h"
#include "platform/appkit/NSView.h"
#include "platform/headless/input/InputQueue.h"
#include "platform/headless/input/VirtualClock.h"

namespace velmora {

namespace {

/// The frontmost window of the current process at the point, drawers included.
NSWindowRef windowAt(NSPoint point) {
    for (const NSWindowRef& window : NSApp().orderedWindows()) {
        if (NSMouseInRect(point, window->frame(), false)) return window;
        for (const auto& drawer : window->drawers()) {
            NSWindowRef holder = drawer->contentView()->window();
            if (NSMouseInRect(point, holder->frame(), false)) return holder;
        }
    }
    return nullptr;
}

std::uint32_t typeFor(int button, std::uint32_t left, std::uint32_t right, std::uint32_t other) {
    return button == 0 ? left : button == 1 ? right : other;
}

}  // namespace

void HeadlessUser::associate(bool connected) {
    delta_ = {};
    if (!connected) {
        pinned_ = location();
    } else if (pinned_) {
        const NSPoint now = hand();
        for (NSPoint* place : {&from_, &to_, &lastPosted_}) {
            place->x += pinned_->x - now.x;
            place->y += pinned_->y - now.y;
        }
        pinned_.reset();
    }
}

NSPoint HeadlessUser::hand() const {
    const Time now = clock_.now();
    if (now >= end_) return to_;
    const double done =
        static_cast<double>((now - begin_).count()) / static_cast<double>((end_ - begin_).count());
    const auto between = [done](float a, float b) {
        return static_cast<float>(a + (static_cast<double>(b) - a) * done);
    };
    return {between(from_.x, to_.x), between(from_.y, to_.y)};
}

void HeadlessUser::move(NSPoint to, Time duration) {
    from_ = hand();
    to_ = to;
    begin_ = clock_.now();
    end_ = begin_ + duration;
    ++motion_;
    if (duration <= Time::zero()) {
        postMotion();
    } else {
        queue_.insert(std::min(begin_ + motionInterval_, end_),
                      [this, motion = motion_] { sampleMotion(motion); });
    }
}

void HeadlessUser::sampleMotion(int motion) {
    if (motion != motion_) return;
    postMotion();
    if (clock_.now() >= end_) return;
    queue_.insert(std::min(clock_.now() + motionInterval_, end_),
                  [this, motion] { sampleMotion(motion); });
}

bool HeadlessUser::press(int button) {
    const auto held = [button](const HeldButton& b) { return b.button == button; };
    if (std::any_of(buttons_.begin(), buttons_.end(), held)) return false;
    const NSWindowRef window = windowAt(location());
    buttons_.push_back({button, window});
    postMouse(typeFor(button, NSLeftMouseDown, NSRightMouseDown, NSOtherMouseDown), button, window);
    return true;
}

bool HeadlessUser::release(int button) {
    const auto held = std::find_if(buttons_.begin(), buttons_.end(),
                                   [button](const HeldButton& b) { return b.button == button; });
    if (held == buttons_.end()) return false;
    const NSWindowRef window = held->window.lock();
    buttons_.erase(held);
    postMouse(typeFor(button, NSLeftMouseUp, NSRightMouseUp, NSOtherMouseUp), button, window);
    return true;
}

void HeadlessUser::click(int button, const NSWindowRef& window) {
    postMouse(typeFor(button, NSLeftMouseDown, NSRightMouseDown, NSOtherMouseDown), button, window);
    postMouse(typeFor(button, NSLeftMouseUp, NSRightMouseUp, NSOtherMouseUp), button, window);
}

bool HeadlessUser::hold(std::uint32_t flag) {
    if ((flags_ & flag) != 0) return false;
    flags_ |= flag;
    postFlags();
    return true;
}

bool HeadlessUser::letGo(std::uint32_t flag) {
    if ((flags_ & flag) == 0) return false;
    flags_ &= ~flag;
    postFlags();
    return true;
}

bool HeadlessUser::letEverythingGo() {
    if (buttons_.empty() && flags_ == 0) return false;
    while (!buttons_.empty()) release(buttons_.front().button);
    for (std::uint32_t flag = 1; flags_ != 0; flag <<= 1U) letGo(flag);
    return true;
}

NSEvent::Fields HeadlessUser::fields(std::uint32_t type) const {
    NSEvent::Fields fields;
    fields.type = type;
    fields.location = location();
    fields.modifierFlags = flags_;
    fields.timestamp = std::chrono::duration<double>(clock_.now()).count();
    return fields;
}

void HeadlessUser::postMouse(std::uint32_t type, int button, const NSWindowRef& window) {
    NSEvent::Fields event = fields(type);
    event.buttonNumber = button;
    event.eventNumber = ++eventNumber_;
    event.clickCount = type == NSMouseMoved ? 0 : 1;
    event.pressure = buttons_.empty() ? 0.0F : 1.0F;
    if (window) {
        event.location = window->convertScreenToBase(event.location);
        event.windowNumber = window->windowNumber();
    }
    NSApp().postEvent(std::make_shared<NSEvent>(std::move(event)));
}

void HeadlessUser::postMotion() {
    const NSPoint here = hand();
    if (here == lastPosted_) return;
    const auto pixels = [](float to, float from) {
        return static_cast<std::int32_t>(to) - static_cast<std::int32_t>(from);
    };
    delta_.x += pixels(here.x, lastPosted_.x);
    delta_.y -= pixels(here.y, lastPosted_.y);
    lastPosted_ = here;
    if (buttons_.empty()) {
        postMouse(NSMouseMoved, 0, windowAt(location()));
        return;
    }
    const HeldButton& held = buttons_.back();
    postMouse(typeFor(held.button, NSLeftMouseDragged, NSRightMouseDragged, NSOtherMouseDragged),
              held.button, held.window.lock());
}

void HeadlessUser::postFlags() {
    NSApp().postEvent(std::make_shared<NSEvent>(fields(NSFlagsChanged)));
}

void HeadlessUser::postKey(std::uint32_t type, const Key& key) {
    NSEvent::Fields event = fields(type);
    event.modifierFlags |= key.flags;
    event.characters = key.characters;
    event.charactersIgnoringModifiers = key.characters;
    if (const NSWindowRef window = NSApp().keyWindow()) {
        event.location = window->convertScreenToBase(event.location);
        event.windowNumber = window->windowNumber();
    }
    NSApp().postEvent(std::make_shared<NSEvent>(std::move(event)));
}

void HeadlessUser::clickInMenu() {
    NSEvent::Fields fields;
    fields.type = NSSystemDefined;
    NSApp().postEvent(std::make_shared<NSEvent>(std::move(fields)));
    NSApp().nextEventMatchingMask_untilDate_inMode_dequeue(1U << NSSystemDefined, distantPast,
                                                           NSDefaultRunLoopMode, true);
}

NSMenuRef HeadlessUser::contextMenu() const {
    const NSWindowRef window = windowAt(location());
    const NSViewRef content = window ? window->contentView() : nullptr;
    if (!content) return nullptr;
    NSEvent::Fields click = fields(NSRightMouseDown);
    click.location = window->convertScreenToBase(click.location);
    click.windowNumber = window->windowNumber();
    const NSViewRef view = content->hitTest(click.location);
    try {
        return view ? view->menuForEvent(std::make_shared<NSEvent>(std::move(click))) : nullptr;
    } catch (const std::exception&) {
        // The host's own fault, which it survives.
        return nullptr;
    }
}

void HeadlessUser::scroll(float deltaX, float deltaY) {
    NSEvent::Fields event = fields(NSScrollWheel);
    event.deltaX = deltaX;
    event.deltaY = deltaY;
    if (const NSWindowRef window = windowAt(event.location)) {
        event.location = window->convertScreenToBase(event.location);
        event.windowNumber = window->windowNumber();
    }
    NSApp().postEvent(std::make_shared<NSEvent>(std::move(event)));
}

}  // namespace velmora
