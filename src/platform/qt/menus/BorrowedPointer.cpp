#include "platform/qt/menus/BorrowedPointer.h"

#include <QCursor>

namespace velmora {

BorrowedPointer::BorrowedPointer(QPoint place) {
    const QPoint before = QCursor::pos();
    if (before == place) return;
    QCursor::setPos(place);
    if (QCursor::pos() != before) wayBack_ = before - place;
}

BorrowedPointer::~BorrowedPointer() {
    if (!wayBack_.isNull()) QCursor::setPos(QCursor::pos() + wayBack_);
}

}  // namespace velmora
