#include "platform/qt/X11RawMotion.h"

#include <xcb/xinput.h>

namespace velmora {

namespace {

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

X11RawMotion::X11RawMotion() : on_(select()) {}

bool X11RawMotion::select() {
    xcb_connection_t* server = connection_.server();
    if (!server) return false;
    const auto* extension = xcb_get_extension_data(server, &xcb_input_id);
    if (!extension || !extension->present) return false;
    extension_ = extension->major_opcode;
    const auto version = owned(xcb_input_xi_query_version_reply(
        server, xcb_input_xi_query_version(server, 2, 2), nullptr));
    if (!version || version->major_version < 2) return false;
    const struct {
        xcb_input_event_mask_t head;
        std::uint32_t events;
    } mask{{XCB_INPUT_DEVICE_ALL_MASTER, 1}, XCB_INPUT_XI_EVENT_MASK_RAW_MOTION};
    const auto request =
        xcb_input_xi_select_events_checked(server, connection_.root(), 1, &mask.head);
    return !owned(xcb_request_check(server, request));
}

X11RawMotion::Answer X11RawMotion::pointer() {
    xcb_connection_t* server = connection_.server();
    if (!server) return {};
    const auto request = xcb_query_pointer(server, connection_.root());
    const auto reply = owned(xcb_query_pointer_reply(server, request, nullptr));
    if (!reply) return {};
    return {QPoint(reply->root_x, reply->root_y), request.sequence};
}

std::optional<QPoint> X11RawMotion::begin() {
    const auto [place, answered] = pointer();
    first_ = answered;
    return place;
}

void X11RawMotion::moveTo(QPoint place) {
    xcb_connection_t* server = connection_.server();
    if (!server) return;
    xcb_warp_pointer(server, XCB_NONE, connection_.root(), 0, 0, 0, 0,
                     static_cast<std::int16_t>(place.x()), static_cast<std::int16_t>(place.y()));
    pointer();
}

std::optional<X11RawMotion::Reading> X11RawMotion::take() {
    const auto [place, answered] = pointer();
    if (!place) return {};
    readEvents();
    Reading reading{*place, {}, false};
    QPointF last;
    while (!events_.empty() && events_.front().number < answered) {
        const Event event = events_.front();
        events_.pop_front();
        if (event.number < first_) continue;
        last = event.motion;
        reading.motion += last;
        if (isAbsolute(event.device)) reading.isPlace = true;
    }
    // Programs that move the pointer do so by the server's own device, which tells either.
    if (!last.isNull() && last == QPointF(*place)) reading.isPlace = true;
    return reading;
}

void X11RawMotion::readEvents() {
    xcb_connection_t* server = connection_.server();
    if (!server) return;
    while (const auto event = owned(xcb_poll_for_queued_event(server))) {
        const auto* raw = reinterpret_cast<const xcb_input_raw_motion_event_t*>(event.get());
        if ((event->response_type & 0x7FU) != XCB_GE_GENERIC || raw->extension != extension_ ||
            raw->event_type != XCB_INPUT_RAW_MOTION) {
            continue;
        }
        events_.push_back({raw->full_sequence, raw->sourceid, motionOf(*raw)});
    }
}

bool X11RawMotion::isAbsolute(std::uint16_t device) {
    if (const auto known = absolute_.find(device); known != absolute_.end()) return known->second;
    bool& absolute = absolute_[device];
    xcb_connection_t* server = connection_.server();
    if (!server) return absolute;
    const auto request = xcb_input_xi_query_device(server, device);
    const auto reply = owned(xcb_input_xi_query_device_reply(server, request, nullptr));
    if (!reply) return absolute;
    auto info = xcb_input_xi_query_device_infos_iterator(reply.get());
    if (info.rem == 0) return absolute;
    auto part = xcb_input_xi_device_info_classes_iterator(info.data);
    for (; part.rem > 0; xcb_input_device_class_next(&part)) {
        if (part.data->type != XCB_INPUT_DEVICE_CLASS_TYPE_VALUATOR) continue;
        const auto* axis = reinterpret_cast<const xcb_input_valuator_class_t*>(part.data);
        if (axis->number == 0) absolute = axis->mode == XCB_INPUT_VALUATOR_MODE_ABSOLUTE;
    }
    return absolute;
}

}  // namespace velmora
