#pragma once

#include <cstdint>

namespace velmora {

/// Motion of the mouse in whole pixels, y growing downward.
struct CGMouseDelta {
    std::int32_t x = 0;
    std::int32_t y = 0;
};

/// How far the mouse has moved since this was asked last, or since it ceased to move the pointer:
/// of several events that came in the meantime the first one has it all.
CGMouseDelta CGGetLastMouseDelta();

/// Whether the mouse moves the pointer. While it does not, the pointer stands still and motion is
/// told all the same.
void CGAssociateMouseAndMouseCursorPosition(bool connected);

}  // namespace velmora
