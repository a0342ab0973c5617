#include "platform/qt/base/QtFonts.h"

#include <QFontDatabase>

namespace velmora {

QFont qtFont(const NSFont& font, const QFont& base) {
    const qreal factor =
        static_cast<qreal>(font.pointSize) / static_cast<qreal>(NSFont().pointSize);
    QFont shown = base;
    if (font.family == NSFont::Family::fixedPitch) {
        shown.setFamily(QFontDatabase::systemFont(QFontDatabase::FixedFont).family());
        shown.setFixedPitch(true);
    }
    if (base.pointSizeF() > 0) {
        shown.setPointSizeF(base.pointSizeF() * factor);
    } else {
        shown.setPixelSize(qRound(base.pixelSize() * factor));
    }
    return shown;
}

}  // namespace velmora
