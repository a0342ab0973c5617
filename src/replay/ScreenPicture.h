#pragma once

#include <optional>

#include "replay/Canvas.h"

namespace velmora {

class HeadlessDesktop;

/// Takes pictures of the screen for the eye: what the system shows of its own (drawn windows, its
/// panel as a frame, its cursor), before the host's windows as plain frames.
class ScreenPicture {
public:
    /// The screen as it is, if it differs from the last picture. What only the host changes is no
    /// reason for one.
    std::optional<Bitmap> takeIfNew(HeadlessDesktop& desktop);

private:
    Bitmap last_;
    bool showedSomething_ = false;
};

}  // namespace velmora
