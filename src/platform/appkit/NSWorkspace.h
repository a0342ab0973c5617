#pragma once

#include <string>

namespace velmora {

/// What the user's desktop does for every application.
class NSWorkspace {
public:
    static NSWorkspace& sharedWorkspace();

    /// Opens the address ("https://…", "file:///…") with the user's default handler.
    void openURL(const std::string& address);
};

/// The address of a file by its absolute path.
std::string fileURLWithPath(const std::string& path);

/// The system's alert sound. Neither blocks nor throws.
void NSBeep();

}  // namespace velmora
