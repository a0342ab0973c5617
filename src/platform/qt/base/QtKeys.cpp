#include "platform/qt/base/QtKeys.h"

#include <QLibrary>

#include "platform/foundation/files/Characters.h"
#include "platform/qt/base/ModifierKeys.h"

namespace velmora {

namespace {

constexpr char16_t firstFunctionKey = 0xF700;
constexpr char16_t firstNumberedKey = 0xF704;

/// X's mask of Caps Lock, which the toolkit's own modifiers leave out.
constexpr quint32 capsLockState = 2;

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
        return static_cast<char16_t>(firstNumberedKey + (key - Qt::Key_F1));
    }
    for (const NamedKey& named : namedKeys) {
        if (named.key == key) return named.character;
    }
    return 0;
}

/// 0 for a character that is no key's fixed one.
int namedKeyOf(char32_t character) {
    if (character >= firstNumberedKey && character <= characterOfNamedKey(Qt::Key_F35)) {
        return Qt::Key_F1 + static_cast<int>(character - firstNumberedKey);
    }
    for (const NamedKey& named : namedKeys) {
        if (named.character == character) return named.key;
    }
    return 0;
}

bool isCharacterKey(int key) {
    return key > 0 && key < Qt::Key_Escape;
}

bool isAscii(char32_t character) {
    return character < 0x80;
}

/// The character of a symbol of X's keyboard, 0 for none. The toolkit's own plug-ins have loaded
/// the library that knows.
char32_t characterOfSymbol(quint32 symbol) {
    using Function = std::uint32_t (*)(std::uint32_t);
    static const auto function = reinterpret_cast<Function>(
        QLibrary::resolve(QStringLiteral("xkbcommon"), 0, "xkb_keysym_to_utf32"));
    return function && symbol != 0 ? function(symbol) : 0;
}

/// The one character of the text, 0 when it has none or several.
char32_t onlyCharacter(const std::string& text) {
    return firstCharacterLength(text) == text.size() ? firstCharacter(text) : 0;
}

/// Whether a shortcut may take the key from whoever has the keyboard focus: here hosts run their
/// commands by Alt and Super as well, for which the platform knows no other sign than that of a
/// function key.
bool isCommandKey(const QKeyEvent& event) {
    const Qt::KeyboardModifiers modifiers = event.QInputEvent::modifiers();
    return isFunctionKey(event.key()) || modifiers & (Qt::AltModifier | Qt::MetaModifier);
}

/// The first key of the sequence and its modifiers.
std::pair<int, Qt::KeyboardModifiers> firstKeyOf(const QKeySequence& sequence) {
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return {sequence[0].key(), sequence[0].keyboardModifiers()};
#else
    constexpr auto mask = static_cast<int>(Qt::KeyboardModifierMask);
    return {sequence[0] & ~mask, Qt::KeyboardModifiers(sequence[0] & mask)};
#endif
}

}  // namespace

bool isFunctionKey(int key) {
    return characterOfNamedKey(key) >= firstFunctionKey;
}

std::string charactersForKey(const QKeyEvent& event) {
    const int key = event.key();
    if (const char16_t character = characterOfNamedKey(key)) {
        return stringWithCharacter(character);
    }
    if (!isCharacterKey(key)) return event.text().toStdString();
    // With Ctrl the toolkit names the key by a Latin letter, whatever the layout in force has
    // there.
    auto character = static_cast<char32_t>(key);
    const bool shifted = event.QInputEvent::modifiers() & Qt::ShiftModifier;
    if (isAscii(character)) {
        const char32_t typed = characterOfSymbol(event.nativeVirtualKey());
        if (typed && !isAscii(typed)) character = typed;
    }
    const std::string text = stringWithCharacter(character);
    return shifted ? uppercaseString(text) : lowercaseString(text);
}

NSEvent::Fields fieldsForKey(const QKeyEvent& event) {
    NSEvent::Fields fields;
    fields.type = event.type() == QEvent::KeyRelease ? NSKeyUp : NSKeyDown;
    // The key's own modifiers, as Qt gives them to a widget: without the correction for the key.
    fields.modifierFlags = flagsForModifiers(event.QInputEvent::modifiers());
    if (isCommandKey(event)) fields.modifierFlags |= NSFunctionKeyMask;
    if (event.nativeModifiers() & capsLockState) fields.modifierFlags |= NSAlphaShiftKeyMask;
    fields.timestamp = static_cast<double>(event.timestamp()) / 1000;
    fields.characters = event.text().toStdString();
    fields.charactersIgnoringModifiers = charactersForKey(event);
    fields.keyCode = static_cast<std::uint16_t>(event.nativeScanCode());
    fields.isARepeat = event.isAutoRepeat();
    return fields;
}

KeyEquivalent keyEquivalentFor(const QKeySequence& sequence) {
    if (sequence.isEmpty()) return {};
    auto [key, modifiers] = firstKeyOf(sequence);
    const char16_t named = characterOfNamedKey(key);
    if (sequence.count() > 1 || (!named && !isCharacterKey(key))) {
        return {sequence.toString(QKeySequence::PortableText).toStdString(), 0};
    }
    const std::string text = stringWithCharacter(named ? named : static_cast<char32_t>(key));
    const std::string small = named ? text : lowercaseString(text);
    const bool carriesShift = small != text && (modifiers & Qt::ShiftModifier);
    if (carriesShift) modifiers.setFlag(Qt::ShiftModifier, false);
    modifiers.setFlag(Qt::KeypadModifier, false);
    return {carriesShift ? text : small, flagsForModifiers(modifiers)};
}

QKeySequence sequenceFor(const KeyEquivalent& equivalent) {
    const char32_t character = onlyCharacter(equivalent.key);
    if (character == 0) return {};
    bool shift = equivalent.modifiers & NSShiftKeyMask;
    int key = namedKeyOf(character);
    if (!key) {
        key = static_cast<int>(firstCharacter(uppercaseString(equivalent.key)));
        if (!isCharacterKey(key)) return {};
        const bool isUpper = equivalent.key != lowercaseString(equivalent.key);
        if (isUpper) shift = true;
    }
    if (shift) key |= static_cast<int>(Qt::SHIFT);
    if (equivalent.modifiers & NSCommandKeyMask) key |= static_cast<int>(Qt::CTRL);
    if (equivalent.modifiers & NSAlternateKeyMask) key |= static_cast<int>(Qt::ALT);
    if (equivalent.modifiers & NSControlKeyMask) key |= static_cast<int>(Qt::META);
    return QKeySequence(key);
}

}  // namespace velmora
