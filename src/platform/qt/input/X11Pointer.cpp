#include "platform/qt/input/X11Pointer.h"

#include <xcb/xinput.h>

#include "platform/qt/base/X11Connection.h"

namespace velmora {

namespace {

/// X's buttons 4 to 7 are the wheel's.
Qt::MouseButton buttonOfNumber(unsigned number) {
    switch (number) {
        case 1: return Qt::LeftButton;
        case 2: return Qt::MiddleButton;
        case 3: return Qt::RightButton;
        default: break;
    }
    if (number < 8 || number > 31) return Qt::NoButton;
    return static_cast<Qt::MouseButton>(unsigned{Qt::BackButton} << (number - 8));
}

}  // namespace

std::optional<Qt::MouseButtons> X11Pointer::pressedButtons() {
    xcb_connection_t* server = hostConnection();
    if (!server) return std::nullopt;
    if (!pointer_) {
        const auto request = xcb_input_xi_get_client_pointer(server, XCB_NONE);
        const auto reply = owned(xcb_input_xi_get_client_pointer_reply(server, request, nullptr));
        if (!reply || !reply->set) return std::nullopt;
        pointer_ = reply->deviceid;
    }
    const auto root = xcb_setup_roots_iterator(xcb_get_setup(server)).data->root;
    const auto request = xcb_input_xi_query_pointer(server, root, *pointer_);
    const auto reply = owned(xcb_input_xi_query_pointer_reply(server, request, nullptr));
    if (!reply) return std::nullopt;

    Qt::MouseButtons pressed;
    const std::uint32_t* words = xcb_input_xi_query_pointer_buttons(reply.get());
    for (unsigned i = 0; i < reply->buttons_len * 32U; ++i) {
        if ((words[i / 32] >> (i % 32)) & 1U) pressed |= buttonOfNumber(i);
    }
    return pressed;
}

}  // namespace velmora
