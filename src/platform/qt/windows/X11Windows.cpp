#include "platform/qt/windows/X11Windows.h"

#include <xcb/xcb.h>

#include <string>

namespace velmora {

namespace {

constexpr std::uint32_t mostWindows = 4096;

}  // namespace

xcb_connection_t* X11Windows::connection() {
    if (!connection_) {
        connection_.emplace();
        if (connection_->server()) stackingAtom_ = atom("_NET_CLIENT_LIST_STACKING");
    }
    return connection_->server();
}

std::uint32_t X11Windows::atom(std::string_view name) {
    xcb_connection_t* server = connection_->server();
    const auto request =
        xcb_intern_atom(server, 0, static_cast<std::uint16_t>(name.size()), name.data());
    const auto reply = owned(xcb_intern_atom_reply(server, request, nullptr));
    return reply ? reply->atom : std::uint32_t{XCB_ATOM_NONE};
}

bool X11Windows::hasCompositor() {
    xcb_connection_t* server = connection();
    if (!server) return false;
    const std::uint32_t selection = atom("_NET_WM_CM_S" + std::to_string(connection_->screen()));
    if (selection == XCB_ATOM_NONE) return false;
    const auto request = xcb_get_selection_owner(server, selection);
    const auto reply = owned(xcb_get_selection_owner_reply(server, request, nullptr));
    return reply && reply->owner != XCB_WINDOW_NONE;
}

std::vector<std::uint32_t> X11Windows::stackingOrder() {
    xcb_connection_t* server = connection();
    if (!server || stackingAtom_ == XCB_ATOM_NONE) return {};
    const auto request = xcb_get_property(server, 0, connection_->root(), stackingAtom_,
                                          XCB_ATOM_WINDOW, 0, mostWindows);
    const auto reply = owned(xcb_get_property_reply(server, request, nullptr));
    if (!reply || reply->format != 32) return {};
    const auto* windows = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return {windows, windows + reply->value_len};
}

bool X11Windows::focus(std::uint32_t window) {
    xcb_connection_t* server = connection();
    if (!server) return false;
    const auto request =
        xcb_set_input_focus_checked(server, XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
    return !owned(xcb_request_check(server, request));
}

}  // namespace velmora
