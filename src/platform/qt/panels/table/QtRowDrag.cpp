#include "platform/qt/panels/table/QtRowDrag.h"

#include <QPainter>
#include <QScrollBar>
#include <QStyle>
#include <QStyleOption>
#include <QTableView>

#include "platform/qt/base/QtGuard.h"

namespace velmora {

namespace {

/// How near to an edge the rows move on, in points, and how often, in ms.
constexpr int edge = 12;
constexpr int scrollInterval = 80;
/// How far beside the table a drop still goes into it, in points.
constexpr int tolerance = 40;

}  // namespace

QtRowDrag::QtRowDrag(QTableView& view, std::shared_ptr<NSTableView> table)
    : view_(view), table_(std::move(table)) {
    scroller_.setInterval(scrollInterval);
    connect(&scroller_, &QTimer::timeout, this, [this] { scroll(); });
    scroller_.start();
}

QtRowDrag::~QtRowDrag() {
    guarded("The end of a drag", [this] { table_->userEndedDrag(); });
    view_.viewport()->unsetCursor();
    view_.viewport()->update();
}

bool QtRowDrag::isAllowed(Place place) const {
    unsigned operations = NSDragOperationNone;
    guarded("A drag", [&] { operations = table_->userDraggedTo(place.row, place.operation); });
    return operations != NSDragOperationNone;
}

std::optional<QtRowDrag::Place> QtRowDrag::placeAt(QPoint pointer) const {
    const QRect area = view_.viewport()->rect();
    if (!area.adjusted(-tolerance, -tolerance, tolerance, tolerance).contains(pointer)) return {};
    const int y = qBound(area.top(), pointer.y(), area.bottom());
    const int row = view_.rowAt(y);
    Place between{row < 0 ? table_->numberOfRows() : row, NSTableViewDropAbove};
    if (row >= 0) {
        const int height = view_.rowHeight(row);
        const int offset = y - view_.rowViewportPosition(row);
        const bool isInMiddle = offset >= height / 4 && offset < height - height / 4;
        const Place onto{row, NSTableViewDropOn};
        if (isInMiddle && isAllowed(onto)) return onto;
        if (offset >= height / 2) ++between.row;
    }
    if (isAllowed(between)) return between;
    return {};
}

void QtRowDrag::moveTo(QPoint pointer) {
    pointer_ = pointer;
    place_ = placeAt(pointer);
    view_.viewport()->setCursor(place_ ? Qt::ClosedHandCursor : Qt::ForbiddenCursor);
    view_.viewport()->update();
}

void QtRowDrag::drop() {
    if (!place_) return;
    guarded("A drop", [this] { table_->userDropped(place_->row, place_->operation); });
}

void QtRowDrag::scroll() {
    const int height = view_.viewport()->height();
    if (pointer_.y() >= edge && pointer_.y() < height - edge) return;
    QScrollBar& bar = *view_.verticalScrollBar();
    bar.setValue(bar.value() + (pointer_.y() < edge ? -1 : 1) * bar.singleStep());
    moveTo(pointer_);
}

void QtRowDrag::paint() const {
    if (!place_) return;
    const int rows = table_->numberOfRows();
    const bool isOnto = place_->operation == NSTableViewDropOn;
    int y = 0;
    if (place_->row < rows) {
        y = view_.rowViewportPosition(place_->row);
    } else if (rows > 0) {
        y = view_.rowViewportPosition(rows - 1) + view_.rowHeight(rows - 1);
    }
    const int lowest = view_.viewport()->height() - 1;
    QStyleOption option;
    option.initFrom(&view_);
    option.rect = QRect(0, qMin(y, lowest), view_.viewport()->width(),
                        isOnto ? view_.rowHeight(place_->row) : 0);
    QPainter painter(view_.viewport());
    view_.style()->drawPrimitive(QStyle::PE_IndicatorItemViewItemDrop, &option, &painter, &view_);
}

}  // namespace velmora
