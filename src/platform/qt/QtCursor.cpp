#include "platform/qt/QtCursor.h"

#include <QCursor>
#include <QGuiApplication>
#include <vector>

#include "platform/appkit/NSCursor.h"
#include "platform/qt/QtImages.h"

namespace velmora {

QtCursor::~QtCursor() {
    if (qGuiApp) hide();
}

void QtCursor::show(const NSCursor* cursor) {
    hide();
    if (!cursor || !cursor->image()) return;
    shown_ = pixmapFromBitmap(cursor->image()->bitmap());
    if (shown_.isNull()) return;
    QGuiApplication::setOverrideCursor(QCursor(shown_, static_cast<int>(cursor->hotSpot().x),
                                               static_cast<int>(cursor->hotSpot().y)));
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
