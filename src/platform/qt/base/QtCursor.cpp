#include "platform/qt/base/QtCursor.h"

#include <QCursor>
#include <QGuiApplication>
#include <vector>

#include "platform/appkit/drawing/NSCursor.h"
#include "platform/qt/base/QtImages.h"

namespace velmora {

QtCursor::~QtCursor() {
    if (qGuiApp) hide();
}

void QtCursor::show(const NSCursor* cursor) {
    hide();
    if (!cursor || !cursor->image()) return;
    const qreal ratio = qGuiApp->devicePixelRatio();
    shown_ = pixmapFromImage(*cursor->image(), ratio);
    if (shown_.isNull()) return;
    // This platform takes the picture's pixels, and the hot spot, for those of the screen.
    const bool inPixels = QGuiApplication::platformName() == QLatin1String("xcb");
    const QPoint hotSpot = (QPointF(static_cast<double>(cursor->hotSpot().x),
                                    static_cast<double>(cursor->hotSpot().y)) *
                            (inPixels ? ratio : 1))
                               .toPoint();
    QGuiApplication::setOverrideCursor(QCursor(shown_, hotSpot.x(), hotSpot.y()));
}

void QtCursor::hide() {
    if (shown_.isNull()) return;
    // The host may have pushed cursors above ours meanwhile: it will pop as many.
    std::vector<QCursor> above;
    while (const QCursor* top = QGuiApplication::overrideCursor()) {
        const bool ours = top->pixmap().cacheKey() == shown_.cacheKey();
        if (!ours) above.push_back(*top);
        QGuiApplication::restoreOverrideCursor();
        if (ours) break;
    }
    for (auto cursor = above.rbegin(); cursor != above.rend(); ++cursor) {
        QGuiApplication::setOverrideCursor(*cursor);
    }
    shown_ = QPixmap();
}

}  // namespace velmora
