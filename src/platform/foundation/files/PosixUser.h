#pragma once

#include <string>

namespace velmora {

/// Whether the process acts for the user that started it, in that user's own home: not with the
/// rights of another user or group, as a set-uid program does, and not as another user who was left
/// the first one's environment. A home that is not there is nobody's.
bool isOwnUsersProcess(const std::string& home);

}  // namespace velmora
