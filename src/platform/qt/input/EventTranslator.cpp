#include "platform/qt/input/EventTranslator.h"

#include <QCursor>
#include <bit>

#include "platform/qt/base/QtCoordinates.h"
#include "platform/qt/base/QtKeys.h"
#include "platform/qt/windows/QtWindows.h"

#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
#include <private/qevent_p.h>
#include <QPointingDevice>
#endif

namespace velmora {

namespace {

int buttonNumber(Qt::MouseButtons buttons) {
    return buttons == Qt::NoButton ? 0 : std::countr_zero(static_cast<unsigned>(int(buttons)));
}

std::uint32_t mouseType(QEvent::Type type, Qt::MouseButtons buttons) {
    enum Row { Left, Right, Other };
    static constexpr std::uint32_t types[][3] = {
        {NSLeftMouseDown, NSLeftMouseUp, NSLeftMouseDragged},
        {NSRightMouseDown, NSRightMouseUp, NSRightMouseDragged},
        {NSOtherMouseDown, NSOtherMouseUp, NSOtherMouseDragged},
    };
    if (buttons == Qt::NoButton) return NSMouseMoved;
    const int number = buttonNumber(buttons);
    const Row row = number == 0 ? Left : number == 1 ? Right : Other;
    if (type == QEvent::MouseButtonPress) return types[row][0];
    if (type == QEvent::MouseButtonRelease) return types[row][1];
    return types[row][2];
}

QtMouse readMouse(QMouseEvent& event) {
    QtMouse mouse;
    mouse.type = event.type();
    mouse.button = event.button();
    mouse.buttons = event.buttons();
    mouse.source = event.source();
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    mouse.local = event.position();
    mouse.global = event.globalPosition();
    mouse.device = event.device();
    mouse.opensDoubleClick = QMutableSinglePointEvent::from(event).isDoubleClick();
#else
    mouse.local = event.localPos();
    mouse.global = event.screenPos();
    mouse.opensDoubleClick = event.flags().testFlag(Qt::MouseEventCreatedDoubleClick);
#endif
    return mouse;
}

}  // namespace

QtEventRef EventTranslator::makeMouseEvent(std::shared_ptr<const QtOriginal> original) {
    const QtMouse& mouse = *original->mouse();
    const Qt::MouseButtons buttons =
        mouse.type == QEvent::MouseMove ? mouse.buttons : Qt::MouseButtons(mouse.button);
    NSEvent::Fields fields;
    fields.type = mouseType(mouse.type, buttons);
    fields.modifierFlags = flagsForModifiers(original->modifiers);
    fields.timestamp = static_cast<double>(original->timestamp) / 1000;
    fields.eventNumber = ++lastNumber_;
    fields.buttonNumber = buttonNumber(buttons);
    if (mouse.type != QEvent::MouseMove) fields.clickCount = mouse.opensDoubleClick ? 2 : 1;
    if (mouse.buttons != Qt::NoButton) fields.pressure = 1;
    fields.location = screenPoint(mouse.global);
    if (const NSWindowRef window =
            original->window ? windows_.windowOf(*original->window) : nullptr) {
        fields.location = window->convertScreenToBase(fields.location);
        fields.windowNumber = window->windowNumber();
    }
    return std::make_shared<QtEvent>(std::move(fields), std::move(original));
}

QtEventRef EventTranslator::mouseEvent(QWindow& window, QMouseEvent& event) {
    auto original = std::make_shared<QtOriginal>();
    original->window = &window;
    original->modifiers = event.modifiers();
    original->timestamp = event.timestamp();
    original->what = readMouse(event);
    return makeMouseEvent(std::move(original));
}

QtEventRef EventTranslator::lostRelease(const QtEvent& press, Qt::MouseButtons stillPressed) {
    auto original = std::make_shared<QtOriginal>(press.original());
    auto& mouse = std::get<QtMouse>(original->what);
    mouse.type = QEvent::MouseButtonRelease;
    mouse.buttons = stillPressed;
    mouse.opensDoubleClick = false;
    mouse.global = QCursor::pos();
    if (original->window) mouse.local = original->window->mapFromGlobal(mouse.global.toPoint());
    return makeMouseEvent(std::move(original));
}

QtEventRef EventTranslator::keyEvent(QWindow& window, const QKeyEvent& event) {
    const bool released = event.type() == QEvent::KeyRelease;
    QtKey key;
    key.type = released ? QEvent::KeyRelease : QEvent::KeyPress;
    key.key = event.key();
    key.scanCode = event.nativeScanCode();
    key.virtualKey = event.nativeVirtualKey();
    key.nativeModifiers = event.nativeModifiers();
    key.text = event.text();
    key.autoRepeat = event.isAutoRepeat();
    key.count = event.count();

    NSEvent::Fields fields = fieldsForKey(event);
    fields.eventNumber = ++lastNumber_;
    if (ModifierKeys::isModifierKey(key.key)) {
        fields.type = NSFlagsChanged;
        fields.modifierFlags &= NSAlphaShiftKeyMask;
        fields.modifierFlags |= modifierKeys_.flagsAfter(event);
        fields.characters.clear();
        fields.charactersIgnoringModifiers.clear();
        fields.isARepeat = false;
    }

    auto original = std::make_shared<QtOriginal>();
    original->window = &window;
    original->modifiers = event.QInputEvent::modifiers();
    original->timestamp = event.timestamp();
    original->what = std::move(key);
    if (const NSWindowRef holder = windows_.windowOf(window)) {
        fields.windowNumber = holder->windowNumber();
    }
    return std::make_shared<QtEvent>(std::move(fields), std::move(original));
}

}  // namespace velmora
