#include "platform/qt/panels/controls/QtCellView.h"

#include <QPaintEvent>
#include <QPainter>

#include "platform/qt/base/QtCoordinates.h"
#include "platform/qt/base/QtDrawing.h"
#include "platform/qt/base/QtGuard.h"
#include "platform/qt/panels/controls/QtCell.h"
#include "platform/qt/panels/controls/QtCellIcon.h"
#include "platform/runtime/Raised.h"

namespace velmora {

namespace {

/// A cell that wants more wants as much as it may have.
constexpr float largestCell = 2000;

}  // namespace

QtCellView::QtCellView(std::shared_ptr<NSControl> control,
                       const std::function<bool()>& /*takesInput*/, QWidget* parent)
    : QWidget(parent), control_(std::move(control)) {
    control_->setPeer(this);
    shownSize_ = sizeHint();
}

QtCellView::~QtCellView() {
    letGo();
}

void QtCellView::letGo() {
    if (control_ && control_->peer() == this) control_->setPeer(nullptr);
    control_ = nullptr;
}

QSize QtCellView::sizeHint() const {
    if (!control_) return shownSize_;
    const QSize picture = cellIconSize(*control_->cell());
    if (!picture.isEmpty()) return picture;
    QSize size;
    guarded("Measuring a cell", [&] {
        const NSSize wanted = control_->cell()->cellSize();
        if (wanted.width > largestCell || wanted.height > largestCell) return;
        size = QSize(qRound(wanted.width), qRound(wanted.height));
    });
    return size;
}

void QtCellView::needsDisplay() {
    if (!control_) return;
    const QSize size = sizeHint();
    if (size != shownSize_) updateGeometry();
    shownSize_ = size;
    update();
}

void QtCellView::draw() {
    if (!painting_) return;
    QPainter painter(this);
    const QSize picture = cellIconSize(*control_->cell());
    if (!picture.isEmpty()) {
        const QPoint corner((width() - picture.width()) / 2, (height() - picture.height()) / 2);
        cellIcon(control_->cell()).paint(&painter, QRect(corner, picture));
    }
    drawCell(*control_->cell(), rect(), YAxis::up, painter,
             nsColor(palette().color(QPalette::WindowText)));
}

void QtCellView::paintEvent(QPaintEvent* event) {
    const auto kept = control_;
    if (!kept) return;
    const Raised painting(painting_);
    guarded("Drawing a control", [&] { kept->drawRect(viewRect(event->rect(), height())); });
}

}  // namespace velmora
