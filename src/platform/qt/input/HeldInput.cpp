#include "platform/qt/input/HeldInput.h"

#include <QGuiApplication>

#include "platform/qt/base/ModifierKeys.h"
#include "platform/qt/input/EventTranslator.h"

namespace velmora {

namespace {

constexpr std::uint32_t watchedFlags =
    NSShiftKeyMask | NSControlKeyMask | NSAlternateKeyMask | NSCommandKeyMask;

/// Between two looks the host's loop must have run so often.
constexpr int passesBetweenLooks = 3;

}  // namespace

Qt::MouseButtons HeldInput::pressedButtons() const {
    Qt::MouseButtons buttons;
    for (const QtEventRef& press : presses_) buttons |= press->original().mouse()->button;
    return buttons;
}

std::vector<QtEventRef> HeldInput::takeReleases(Qt::MouseButtons pressed) {
    std::vector<QtEventRef> releases;
    for (auto press = presses_.begin(); press != presses_.end();) {
        if (pressed & (*press)->original().mouse()->button) {
            ++press;
            continue;
        }
        releases.push_back(translator_.lostRelease(**press, pressed));
        press = presses_.erase(press);
    }
    return releases;
}

std::vector<QtEventRef> HeldInput::note(const QtEventRef& event) {
    flags_ = event->modifierFlags() & watchedFlags;
    suspectedFlags_ &= flags_;
    const QtMouse* mouse = event->original().mouse();
    if (!mouse || mouse->source != Qt::MouseEventNotSynthesized) return {};
    if (mouse->type == QEvent::MouseButtonRelease) {
        std::erase_if(presses_, [&](const QtEventRef& press) {
            return press->original().mouse()->button == mouse->button;
        });
    }
    if (mouse->type != QEvent::MouseButtonPress) return takeReleases(mouse->buttons);
    // A button that is pressed twice was released between.
    std::vector<QtEventRef> lost = takeReleases(mouse->buttons & ~mouse->button);
    presses_.push_back(event);
    suspectedButtons_ &= ~mouse->button;
    return lost;
}

std::vector<NSEventRef> HeldInput::released(Time now) {
    ++passesSinceLook_;
    if (isEmpty() || now - lastLook_ < lookInterval || passesSinceLook_ < passesBetweenLooks) {
        return {};
    }
    lastLook_ = now;
    passesSinceLook_ = 0;

    std::vector<NSEventRef> events;
    if (!presses_.empty()) {
        const Qt::MouseButtons held = pressedButtons();
        const Qt::MouseButtons up = held & ~pointer_.pressedButtons().value_or(held);
        const Qt::MouseButtons confirmed = up & suspectedButtons_;
        suspectedButtons_ = up;
        if (confirmed) {
            for (QtEventRef& release : takeReleases(held & ~confirmed)) {
                events.push_back(std::move(release));
            }
        }
    }
    if (flags_ != 0 && QGuiApplication::platformName() == QLatin1String("xcb")) {
        const std::uint32_t down = flagsForModifiers(QGuiApplication::queryKeyboardModifiers());
        const std::uint32_t up = flags_ & ~down;
        const bool confirmed = (up & suspectedFlags_) != 0;
        suspectedFlags_ = up;
        if (confirmed) {
            flags_ &= down;
            NSEvent::Fields fields;
            fields.type = NSFlagsChanged;
            fields.modifierFlags = flags_;
            events.push_back(std::make_shared<NSEvent>(std::move(fields)));
        }
    }
    return events;
}

}  // namespace velmora
