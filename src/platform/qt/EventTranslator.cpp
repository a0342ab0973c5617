#include "platform/qt/EventTranslator.h"

#include <QCursor>
#include <QWidget>
#include <bit>

#include "platform/qt/QtCoordinates.h"
#include "platform/qt/QtWindow.h"
#include "platform/qt/QtWindows.h"

#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
#include <private/qevent_p.h>
#include <QPointingDevice>
#endif

namespace velmora {

namespace {

/// X's mask of Caps Lock, which the toolkit's own modifiers leave out.
constexpr quint32 capsLockState = 2;

constexpr char16_t firstFunctionKey = 0xF700;

struct NamedKey {
    int key;
    char16_t character;
};
constexpr NamedKey namedKeys[] = {
    {Qt::Key_Up, 0xF700},       {Qt::Key_Down, 0xF701},        {Qt::Key_Left, 0xF702},
    {Qt::Key_Right, 0xF703},    {Qt::Key_Insert, 0xF727},      {Qt::Key_Delete, 0xF728},
    {Qt::Key_Home, 0xF729},     {Qt::Key_End, 0xF72B},         {Qt::Key_PageUp, 0xF72C},
    {Qt::Key_PageDown, 0xF72D}, {Qt::Key_Print, 0xF72E},       {Qt::Key_ScrollLock, 0xF72F},
    {Qt::Key_Pause, 0xF730},    {Qt::Key_SysReq, 0xF731},      {Qt::Key_Menu, 0xF735},
    {Qt::Key_Clear, 0xF739},    {Qt::Key_Select, 0xF741},      {Qt::Key_Execute, 0xF742},
    {Qt::Key_Undo, 0xF743},     {Qt::Key_Redo, 0xF744},        {Qt::Key_Find, 0xF745},
    {Qt::Key_Help, 0xF746},     {Qt::Key_Mode_switch, 0xF747}, {Qt::Key_Enter, 0x03},
    {Qt::Key_Tab, 0x09},        {Qt::Key_Return, 0x0D},        {Qt::Key_Backtab, 0x19},
    {Qt::Key_Escape, 0x1B},     {Qt::Key_Backspace, 0x7F},
};

/// 0 for a key that has no fixed character.
char16_t characterOfNamedKey(int key) {
    if (key >= Qt::Key_F1 && key <= Qt::Key_F35) {
        return static_cast<char16_t>(0xF704 + (key - Qt::Key_F1));
    }
    for (const NamedKey& named : namedKeys) {
        if (named.key == key) return named.character;
    }
    return 0;
}

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

std::string charactersForKey(int key, Qt::KeyboardModifiers modifiers, const QString& text) {
    if (const char16_t character = characterOfNamedKey(key)) {
        return QString(QChar(character)).toStdString();
    }
    if (key <= 0 || key >= Qt::Key_Escape) return text.toStdString();
    const auto code = static_cast<char32_t>(key);
    const QString character = QString::fromUcs4(&code, 1);
    return (modifiers & Qt::ShiftModifier ? character : character.toLower()).toStdString();
}

std::shared_ptr<QtWindow> EventTranslator::windowOf(QWindow& window) {
    QWidget* widget = QWidget::find(window.winId());
    return windows_.windowFor(widget ? static_cast<QObject&>(*widget->window()) : window);
}

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
    if (original->window) {
        const std::shared_ptr<QtWindow> window = windowOf(*original->window);
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

    NSEvent::Fields fields;
    fields.timestamp = static_cast<double>(event.timestamp()) / 1000;
    fields.eventNumber = ++lastNumber_;
    fields.keyCode = static_cast<std::uint16_t>(key.scanCode);
    // The key's own modifiers, as Qt gives them to a widget: without the correction for the key.
    const Qt::KeyboardModifiers modifiers = event.QInputEvent::modifiers();
    if (ModifierKeys::isModifierKey(key.key)) {
        fields.type = NSFlagsChanged;
        fields.modifierFlags = modifierKeys_.flagsAfter(event);
    } else {
        fields.type = released ? NSKeyUp : NSKeyDown;
        fields.modifierFlags = flagsForModifiers(modifiers);
        if (characterOfNamedKey(key.key) >= firstFunctionKey) {
            fields.modifierFlags |= NSFunctionKeyMask;
        }
        fields.characters = key.text.toStdString();
        fields.charactersIgnoringModifiers = charactersForKey(key.key, modifiers, key.text);
        fields.isARepeat = key.autoRepeat;
    }
    if (key.nativeModifiers & capsLockState) fields.modifierFlags |= NSAlphaShiftKeyMask;

    auto original = std::make_shared<QtOriginal>();
    original->window = &window;
    original->modifiers = modifiers;
    original->timestamp = event.timestamp();
    original->what = std::move(key);
    fields.windowNumber = windowOf(window)->windowNumber();
    return std::make_shared<QtEvent>(std::move(fields), std::move(original));
}

}  // namespace velmora
