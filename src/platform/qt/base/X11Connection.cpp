#include "platform/qt/base/X11Connection.h"

#include <xcb/xcb.h>

#include <qpa/qplatformnativeinterface.h>
#include <QGuiApplication>

// Last, since it defines words that others use.
#include <X11/Xlib.h>

namespace velmora {

namespace {

void* ofHost(const char* resource) {
    if (QGuiApplication::platformName() != QLatin1String("xcb")) return nullptr;
    QPlatformNativeInterface* native = QGuiApplication::platformNativeInterface();
    return native ? native->nativeResourceForIntegration(resource) : nullptr;
}

}  // namespace

xcb_connection_t* hostConnection() {
    auto* server = static_cast<xcb_connection_t*>(ofHost("connection"));
    return server && xcb_connection_has_error(server) == 0 ? server : nullptr;
}

void flushHostConnection() {
    if (xcb_connection_t* server = hostConnection()) xcb_flush(server);
}

void X11OwnConnection::Disconnect::operator()(xcb_connection_t* connection) const {
    xcb_disconnect(connection);
}

X11OwnConnection::X11OwnConnection() {
    const auto* display = static_cast<Display*>(ofHost("display"));
    if (!display) return;
    connection_.reset(xcb_connect(DisplayString(display), &screen_));
    if (!server()) return;
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(server()));
    for (int number = screen_; screens.rem > 1 && number > 0; --number) xcb_screen_next(&screens);
    root_ = screens.data->root;
}

xcb_connection_t* X11OwnConnection::server() const {
    const bool works = connection_ && xcb_connection_has_error(connection_.get()) == 0;
    return works ? connection_.get() : nullptr;
}

}  // namespace velmora
