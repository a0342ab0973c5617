#include "platform/qt/input/X11PressedWindow.h"

#include <qpa/qplatformwindow.h>
#include <QGuiApplication>
#include <QPlatformSurfaceEvent>
#include <QWindow>

namespace velmora {

void forgetPressedWindow(QObject& receiver, QEvent& event) {
    if (event.type() != QEvent::PlatformSurface || !receiver.isWindowType()) return;
    using Surface = QPlatformSurfaceEvent;
    const bool goes =
        static_cast<const Surface&>(event).surfaceEventType() == Surface::SurfaceAboutToBeDestroyed;
    const auto& window = static_cast<const QWindow&>(receiver);
    QPlatformWindow* handle = window.handle();
    if (!goes || !handle || window.isVisible()) return;
    if (QGuiApplication::platformName() == QLatin1String("xcb")) handle->setVisible(false);
}

}  // namespace velmora
