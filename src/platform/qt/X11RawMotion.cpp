#include "platform/qt/X11RawMotion.h"

#include <xcb/xinput.h>

#include <QGuiApplication>
#include <cstdlib>
#include <cstring>

namespace velmora {

namespace {

template <class Reply>
std::unique_ptr<Reply, decltype(&std::free)> owned(Reply* reply) {
    return {reply, &std::free};
}

double numberOf(xcb_input_fp3232_t value) {
    return value.integral + value.frac / 4294967296.0;
}

/// How far the event goes across and down.
QPointF motionOf(const xcb_input_raw_motion_event_t& event) {
    const std::uint32_t* mask = xcb_input_raw_button_press_valuator_mask(&event);
    const xcb_input_fp3232_t* values = xcb_input_raw_button_press_axisvalues(&event);
    const bool across = event.valuators_len > 0 && (mask[0] & 1U) != 0;
    const bool down = event.valuators_len > 0 && (mask[0] & 2U) != 0;
    QPointF motion;
    if (across) motion.setX(numberOf(values[0]));
    if (down) motion.setY(numberOf(values[across ? 1 : 0]));
    return motion;
}

}  // namespace

void X11RawMotion::Disconnect::operator()(xcb_connection_t* connection) const {
    xcb_disconnect(connection);
}

X11RawMotion::X11RawMotion() {
    if (QGuiApplication::platformName() != QLatin1String("xcb")) return;
    int number = 0;
    connection_.reset(xcb_connect(nullptr, &number));
    if (!select()) connection_.reset();
}

X11RawMotion::~X11RawMotion() = default;

bool X11RawMotion::select() {
    xcb_connection_t* server = connection_.get();
    if (xcb_connection_has_error(server) != 0) return false;
    const auto* extension = xcb_get_extension_data(server, &xcb_input_id);
    if (!extension || !extension->present) return false;
    extension_ = extension->major_opcode;
    const auto version = owned(xcb_input_xi_query_version_reply(
        server, xcb_input_xi_query_version(server, 2, 2), nullptr));
    if (!version || version->major_version < 2) return false;
    root_ = xcb_setup_roots_iterator(xcb_get_setup(server)).data->root;
    const struct {
        xcb_input_event_mask_t head;
        std::uint32_t events;
    } mask{{XCB_INPUT_DEVICE_ALL_MASTER, 1}, XCB_INPUT_XI_EVENT_MASK_RAW_MOTION};
    const auto request = xcb_input_xi_select_events_checked(server, root_, 1, &mask.head);
    return !owned(xcb_request_check(server, request));
}

X11RawMotion::Answer X11RawMotion::pointer() {
    const auto request = xcb_query_pointer(connection_.get(), root_);
    const auto reply = owned(xcb_query_pointer_reply(connection_.get(), request, nullptr));
    if (!reply) return {};
    return {QPoint(reply->root_x, reply->root_y), request.sequence};
}

std::optional<QPoint> X11RawMotion::begin() {
    const auto [place, answered] = pointer();
    first_ = answered;
    return place;
}

std::optional<QPointF> X11RawMotion::take() {
    const std::optional<QPoint> place = pointer().place;
    if (!place) return {};
    QPointF motion;
    QPointF last;
    while (const auto event = owned(xcb_poll_for_queued_event(connection_.get()))) {
        const auto* raw = reinterpret_cast<const xcb_input_raw_motion_event_t*>(event.get());
        if ((event->response_type & 0x7FU) != XCB_GE_GENERIC || raw->extension != extension_ ||
            raw->event_type != XCB_INPUT_RAW_MOTION) {
            continue;
        }
        // An event has the number of the last request that the server had seen before it.
        if (raw->full_sequence < first_) continue;
        last = motionOf(*raw);
        motion += last;
    }
    // What stands exactly at the pointer's place, as a tablet's event does, is a place.
    const bool isPlace = !last.isNull() && last == QPointF(*place);
    return isPlace ? std::nullopt : std::optional(motion);
}

}  // namespace velmora
