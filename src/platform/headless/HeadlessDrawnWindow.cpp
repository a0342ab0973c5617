#include "platform/headless/HeadlessDrawnWindow.h"

#include "platform/headless/HeadlessDesktop.h"

namespace velmora {

void HeadlessDrawnWindow::orderFront() {
    desktop_.showDrawnWindow(*this);
}

void HeadlessDrawnWindow::orderOut() {
    desktop_.removeDrawnWindow(*this);
}

}  // namespace velmora
