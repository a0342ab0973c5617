#include "platform/headless/windows/HeadlessText.h"

#include "platform/appkit/NSEvent.h"

namespace velmora {

bool typeIntoText(std::string& text, const NSEvent& keyDown) {
    constexpr std::uint32_t commands = NSCommandKeyMask | NSControlKeyMask | NSFunctionKeyMask;
    const std::string& characters = keyDown.fields().characters;
    if ((keyDown.modifierFlags() & commands) != 0 || characters == "\x1B") return false;
    if (characters == "\x7F") {
        while (!text.empty()) {
            const auto last = static_cast<unsigned char>(text.back());
            text.pop_back();
            if ((last & 0xC0U) != 0x80U) break;
        }
    } else {
        text += characters == "\r" ? "\n" : characters;
    }
    return true;
}

}  // namespace velmora
