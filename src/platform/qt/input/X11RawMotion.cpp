#include "platform/qt/input/X11RawMotion.h"

#include <xcb/xinput.h>

#include <algorithm>
#include <string_view>

namespace velmora {

namespace {

constexpr std::string_view ownDeviceName = "XTEST Device";

double numberOf(xcb_input_fp3232_t value) {
    return value.integral + value.frac / 4294967296.0;
}

/// The event's numbers across and down.
QPointF numbersOf(const xcb_input_raw_motion_event_t& event) {
    const std::uint32_t* mask = xcb_input_raw_button_press_valuator_mask(&event);
    const xcb_input_fp3232_t* values = xcb_input_raw_button_press_axisvalues(&event);
    const bool across = event.valuators_len > 0 && (mask[0] & 1U) != 0;
    const bool down = event.valuators_len > 0 && (mask[0] & 2U) != 0;
    QPointF numbers;
    if (across) numbers.setX(numberOf(values[0]));
    if (down) numbers.setY(numberOf(values[across ? 1 : 0]));
    return numbers;
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
    xcb_connection_t* server = connection_.server();
    if (!server) return {};
    const auto screen = owned(
        xcb_get_geometry_reply(server, xcb_get_geometry(server, connection_.root()), nullptr));
    const auto property = owned(xcb_intern_atom_reply(
        server, xcb_intern_atom(server, 1, ownDeviceName.size(), ownDeviceName.data()), nullptr));
    const auto [place, answered] = pointer();
    if (!screen || !place) return {};
    size_ = {screen->width, screen->height};
    if (property) ownDeviceProperty_ = property->atom;
    first_ = answered;
    from_ = *place;
    return place;
}

void X11RawMotion::moveTo(QPoint place) {
    xcb_connection_t* server = connection_.server();
    if (!server) return;
    xcb_warp_pointer(server, XCB_NONE, connection_.root(), 0, 0, 0, 0,
                     static_cast<std::int16_t>(place.x()), static_cast<std::int16_t>(place.y()));
    pointer();
    from_ = place;
}

std::optional<X11RawMotion::Reading> X11RawMotion::take() {
    const auto [place, answered] = pointer();
    if (!place) return {};
    readEvents();
    Reading reading{*place, {}, {}};
    std::vector<Event> either;
    while (!events_.empty() && events_.front().number < answered) {
        const Event event = events_.front();
        events_.pop_front();
        if (event.number < first_) continue;
        switch (modeOf(event.device)) {
            case Mode::relative: reading.motion += event.numbers; break;
            // Its numbers are its own; the pointer is where they have led, unless it was set back.
            case Mode::absolute:
                if (*place != from_) reading.told = place;
                break;
            case Mode::either: either.push_back(event); break;
        }
    }
    if (!either.empty()) readEither(either, reading);
    from_ = *place;
    return reading;
}

/// Only where the pointer is tells one from the other. What it does not tell, as in the corner
/// where both are the same, goes on as it was.
void X11RawMotion::readEither(const std::vector<Event>& events, Reading& reading) {
    QPointF sum;
    QPointF led = from_;
    for (const Event& event : events) {
        sum += event.numbers;
        led += event.numbers;
        led = {std::clamp<double>(led.x(), 0, size_.width() - 1),
               std::clamp<double>(led.y(), 0, size_.height() - 1)};
    }
    const QPoint last = events.back().numbers.toPoint();
    const bool mayBeMotion = led.toPoint() == reading.pointer;
    if (mayBeMotion != (last == reading.pointer)) ownDeviceTellsPlaces_ = !mayBeMotion;
    if (ownDeviceTellsPlaces_) {
        reading.told = last;
    } else {
        reading.motion += sum;
    }
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
        events_.push_back({raw->full_sequence, raw->sourceid, numbersOf(*raw)});
    }
}

X11RawMotion::Mode X11RawMotion::modeOf(std::uint16_t device) {
    if (const auto known = modes_.find(device); known != modes_.end()) return known->second;
    Mode mode = Mode::relative;
    if (hasAbsoluteAxes(device)) {
        mode = Mode::absolute;
    } else if (isServersOwn(device)) {
        mode = Mode::either;
    }
    return modes_[device] = mode;
}

bool X11RawMotion::isServersOwn(std::uint16_t device) {
    xcb_connection_t* server = connection_.server();
    if (!server || ownDeviceProperty_ == XCB_NONE) return false;
    const auto request = xcb_input_xi_get_property(server, device, 0, ownDeviceProperty_,
                                                   XCB_GET_PROPERTY_TYPE_ANY, 0, 1);
    const auto reply = owned(xcb_input_xi_get_property_reply(server, request, nullptr));
    return reply && reply->num_items > 0;
}

bool X11RawMotion::hasAbsoluteAxes(std::uint16_t device) {
    xcb_connection_t* server = connection_.server();
    if (!server) return false;
    const auto request = xcb_input_xi_query_device(server, device);
    const auto reply = owned(xcb_input_xi_query_device_reply(server, request, nullptr));
    if (!reply) return false;
    auto info = xcb_input_xi_query_device_infos_iterator(reply.get());
    if (info.rem == 0) return false;
    auto part = xcb_input_xi_device_info_classes_iterator(info.data);
    for (; part.rem > 0; xcb_input_device_class_next(&part)) {
        if (part.data->type != XCB_INPUT_DEVICE_CLASS_TYPE_VALUATOR) continue;
        const auto* axis = reinterpret_cast<const xcb_input_valuator_class_t*>(part.data);
        if (axis->number == 0) return axis->mode == XCB_INPUT_VALUATOR_MODE_ABSOLUTE;
    }
    return false;
}

}  // namespace velmora
