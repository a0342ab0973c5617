#include "platform/qt/X11Connection.h"

#include <xcb/xcb.h>

#include <qpa/qplatformnativeinterface.h>
#include <QGuiApplication>

namespace velmora {

xcb_connection_t* hostConnection() {
    if (QGuiApplication::platformName() != QLatin1String("xcb")) return nullptr;
    QPlatformNativeInterface* native = QGuiApplication::platformNativeInterface();
    if (!native) return nullptr;
    auto* server =
        static_cast<xcb_connection_t*>(native->nativeResourceForIntegration("connection"));
    return server && xcb_connection_has_error(server) == 0 ? server : nullptr;
}

void flushHostConnection() {
    if (xcb_connection_t* server = hostConnection()) xcb_flush(server);
}

}  // namespace velmora
