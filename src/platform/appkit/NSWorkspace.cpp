#include "platform/appkit/NSWorkspace.h"

#include "platform/port/Desktop.h"

namespace velmora {

NSWorkspace& NSWorkspace::sharedWorkspace() {
    static NSWorkspace workspace;
    return workspace;
}

void NSWorkspace::openURL(const std::string& address) {
    desktop().openURL(address);
}

std::string fileURLWithPath(const std::string& path) {
    static constexpr char digits[] = "0123456789ABCDEF";
    static constexpr std::string_view plain =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/";
    std::string address = "file://";
    for (const char c : path) {
        if (plain.find(c) != std::string_view::npos) {
            address += c;
        } else {
            const auto byte = static_cast<unsigned char>(c);
            address += {'%', digits[byte >> 4U], digits[byte & 15U]};
        }
    }
    return address;
}

void NSBeep() {
    desktop().beep();
}

}  // namespace velmora
