#include "platform/qt/trace/X11Shape.h"

#include <xcb/shape.h>

#include <algorithm>

#include "platform/qt/base/X11Connection.h"

namespace velmora {

namespace {

/// So many rectangles are no longer than a request may be on any server.
constexpr std::size_t mostRects = 4096;

void send(xcb_shape_op_t operation, std::uint32_t window, const xcb_rectangle_t* first,
          std::size_t count) {
    if (xcb_connection_t* server = hostConnection()) {
        xcb_shape_rectangles(server, operation, XCB_SHAPE_SK_BOUNDING, XCB_CLIP_ORDERING_UNSORTED,
                             window, 0, 0, static_cast<std::uint32_t>(count), first);
    }
}

std::vector<xcb_rectangle_t> xcbRects(const std::vector<QRect>& rects) {
    std::vector<xcb_rectangle_t> converted;
    converted.reserve(rects.size());
    for (const QRect& rect : rects) {
        converted.push_back(
            {static_cast<std::int16_t>(rect.x()), static_cast<std::int16_t>(rect.y()),
             static_cast<std::uint16_t>(rect.width()), static_cast<std::uint16_t>(rect.height())});
    }
    return converted;
}

}  // namespace

bool X11Shape::isAvailable() {
    xcb_connection_t* server = hostConnection();
    const auto* extension = server ? xcb_get_extension_data(server, &xcb_shape_id) : nullptr;
    return extension && extension->present;
}

void X11Shape::set(const std::vector<QRect>& rects) {
    // An empty shape first: without a rectangle the window has no pixel.
    send(XCB_SHAPE_SO_SET, window_, nullptr, 0);
    add(rects);
}

void X11Shape::add(const std::vector<QRect>& rects) {
    const std::vector<xcb_rectangle_t> converted = xcbRects(rects);
    for (std::size_t at = 0; at < converted.size(); at += mostRects) {
        send(XCB_SHAPE_SO_UNION, window_, converted.data() + at,
             std::min(mostRects, converted.size() - at));
    }
}

void X11Shape::move(QPoint by) {
    if (by.isNull()) return;
    if (xcb_connection_t* server = hostConnection()) {
        xcb_shape_offset(server, XCB_SHAPE_SK_BOUNDING, window_, static_cast<std::int16_t>(by.x()),
                         static_cast<std::int16_t>(by.y()));
    }
}

}  // namespace velmora
