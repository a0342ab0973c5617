#include "platform/headless/windows/HeadlessText.h"

#include "platform/appkit/NSEvent.h"
#include "platform/foundation/files/Characters.h"

namespace velmora {

bool typeIntoText(std::string& text, const NSEvent& keyDown) {
    constexpr std::uint32_t commands = NSCommandKeyMask | NSControlKeyMask | NSFunctionKeyMask;
    const std::string& characters = keyDown.fields().characters;
    if ((keyDown.modifierFlags() & commands) != 0 || characters == "\x1B") return false;
    if (characters == "\x7F") {
        if (!text.empty()) text.resize(wholeCharacters(text, text.size() - 1).size());
    } else {
        text += characters == "\r" ? "\n" : characters;
    }
    return true;
}

}  // namespace velmora
