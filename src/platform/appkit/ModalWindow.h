#pragma once

#include "platform/appkit/NSWindow.h"

namespace velmora {

/// A window of our own that the application can run as the only one that takes input.
class ModalWindow : public NSWindow {
public:
    /// Lets the host go on, with the window as the only one that takes input, until endModal is
    /// called, the user closes the window, or the application quits.
    virtual void runModal() = 0;
    virtual void endModal() = 0;
};

}  // namespace velmora
