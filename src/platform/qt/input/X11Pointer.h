#pragma once

#include <Qt>
#include <QtGlobal>
#include <cstdint>
#include <optional>

namespace velmora {

/// Asks the X server which mouse buttons are down, whatever events have said.
class X11Pointer {
public:
    /// Nothing on any other display, or when the server does not answer.
    std::optional<Qt::MouseButtons> pressedButtons();

private:
    /// The server's number of the pointer, once it is known.
    std::optional<std::uint16_t> pointer_;
};

}  // namespace velmora
