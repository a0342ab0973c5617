#include "platform/qt/base/X11ErrorFilter.h"

#include <xcb/xcb.h>

#include <QCoreApplication>

#include "platform/qt/base/X11Connection.h"

namespace velmora {

namespace {

/// Numbers begin again after the largest.
bool isBefore(std::uint32_t a, std::uint32_t b) {
    return static_cast<std::int32_t>(a - b) < 0;
}

}  // namespace

X11ErrorFilter::~X11ErrorFilter() {
    if (qApp) qApp->removeNativeEventFilter(this);
}

void X11ErrorFilter::run(const std::function<void()>& work) {
    xcb_connection_t* server = hostConnection();
    if (!server) return work();
    const std::uint32_t first = xcb_no_operation(server).sequence;
    work();
    if (hostConnection() != server) return;
    first_ = first;
    last_ = xcb_no_operation(server).sequence;
    qApp->installNativeEventFilter(this);
}

bool X11ErrorFilter::filter(const QByteArray& type, const void* event) {
    if (type != "xcb_generic_event_t") return false;
    const auto* answer = static_cast<const xcb_generic_event_t*>(event);
    if (isBefore(last_, answer->full_sequence)) {
        qApp->removeNativeEventFilter(this);
        return false;
    }
    constexpr std::uint8_t error = 0;
    return answer->response_type == error && isBefore(first_, answer->full_sequence);
}

#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
bool X11ErrorFilter::nativeEventFilter(const QByteArray& type, void* event, qintptr* /*result*/) {
#else
bool X11ErrorFilter::nativeEventFilter(const QByteArray& type, void* event, long* /*result*/) {
#endif
    return filter(type, event);
}

}  // namespace velmora
