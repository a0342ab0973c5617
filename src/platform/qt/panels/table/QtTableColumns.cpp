#include "platform/qt/panels/table/QtTableColumns.h"

#include <cmath>

#include "platform/qt/base/QtGuard.h"
#include "platform/runtime/Raised.h"

namespace velmora {

namespace {

/// As small as a column can be for a person to grasp its edge, in points.
constexpr int smallestSection = 8;

float widthOf(const NSTableView& table) {
    float width = 0;
    for (const NSTableColumnRef& column : table.tableColumns()) width += column->width();
    return width;
}

}  // namespace

QtTableColumns::QtTableColumns(QHeaderView& header, std::shared_ptr<NSTableView> table)
    : header_(header), table_(std::move(table)) {
    header_.setMinimumSectionSize(smallestSection);
    header_.setSectionsClickable(false);
    header_.setHighlightSections(false);
    header_.setResizeContentsPrecision(0);
    QObject::connect(&header_, &QHeaderView::sectionResized, &context_,
                     [this](int section, int /*before*/, int size) {
                         if (showing_ || !table_) return;
                         guarded("A column's width", [&] { userResized(section, size); });
                     });
}

void QtTableColumns::show() {
    if (!table_ || showing_) return;
    const Raised showing(showing_);
    const auto& columns = table_->tableColumns();
    bool canFill = false;
    int begin = 0;
    float width = 0;
    // Rounded by their edges, so that their sum is the whole width.
    for (int i = 0; i < static_cast<int>(columns.size()) && i < header_.count(); ++i) {
        const NSTableColumn& column = *columns[static_cast<std::size_t>(i)];
        width += column.width();
        const int end = qRound(width);
        header_.resizeSection(i, end - begin);
        header_.setSectionResizeMode(
            i, column.isResizable() ? QHeaderView::Interactive : QHeaderView::Fixed);
        canFill = canFill || column.isResizable();
        begin = end;
    }
    header_.setStretchLastSection(!canFill);
}

void QtTableColumns::fit(int width) {
    if (!table_) return;
    width_ = static_cast<float>(width);
    guarded("A table's width", [this] {
        table_->userResized(width_);
        table_->sizeToFit();
    });
    show();
}

void QtTableColumns::userResized(int section, int size) {
    const auto index = static_cast<std::size_t>(section);
    if (index >= table_->tableColumns().size()) return;
    // Its last section stretches; that is none of the table's widths.
    if (header_.stretchLastSection()) return;
    table_->tableColumns()[index]->setWidth(static_cast<float>(size));
    giveRest(index);
    show();
}

void QtTableColumns::giveRest(std::size_t section) {
    const auto& columns = table_->tableColumns();
    NSTableColumnRef taker;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (i == section || !columns[i]->isResizable()) continue;
        taker = columns[i];
        if (i > section) break;
    }
    const float rest = width_ - widthOf(*table_);
    if (!taker) taker = columns[section];
    taker->setWidth(taker->width() + rest);
    // What the other cannot give, this one does not get.
    const float missing = width_ - widthOf(*table_);
    if (missing < 0) columns[section]->setWidth(columns[section]->width() + missing);
}

}  // namespace velmora
