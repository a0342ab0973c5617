#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/qt/base/X11Connection.h"

namespace velmora {

/// What only the X server knows of windows. Has a connection of its own, opened when it is first
/// needed; on any other display everything here answers nothing.
class X11Windows {
public:
    /// The windows that the window manager manages, the lowest first; empty when it does not say.
    std::vector<std::uint32_t> stackingOrder();

    /// Gives the window the keys without raising it. False when the server refuses.
    bool focus(std::uint32_t window);

    /// Whether a compositing manager runs: without one nothing on the screen is translucent.
    bool hasCompositor();

private:
    /// Null when there is none.
    xcb_connection_t* connection();
    std::uint32_t atom(std::string_view name);

    std::optional<X11OwnConnection> connection_;
    std::uint32_t stackingAtom_ = 0;
};

}  // namespace velmora
