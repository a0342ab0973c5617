#include "platform/qt/panels/table/QtCellActions.h"

#include <QKeyEvent>
#include <QPointer>

#include "platform/appkit/controls/NSPopUpButtonCell.h"
#include "platform/qt/base/QtGuard.h"
#include "platform/qt/panels/table/QtCellMenu.h"

namespace velmora {

namespace {

constexpr auto keyModifiers =
    Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;

}  // namespace

QtCellActions::QtCellActions(QTableView& view, std::shared_ptr<NSTableView> table,
                             std::function<bool()> takesInput)
    : view_(view), table_(std::move(table)), takesInput_(std::move(takesInput)) {}

QtCellActions::Kind QtCellActions::kindAt(const QModelIndex& index) const {
    if (!table_ || !table_->isEnabled() || !index.isValid()) return Kind::nothing;
    const auto& columns = table_->tableColumns();
    const auto column = static_cast<std::size_t>(index.column());
    if (column >= columns.size()) return Kind::nothing;
    const NSCell* cell = columns[column]->dataCell().get();
    if (dynamic_cast<const NSPopUpButtonCell*>(cell)) return Kind::popUp;
    if (dynamic_cast<const NSButtonCell*>(cell)) return Kind::toggle;
    if (!dynamic_cast<const NSTextFieldCell*>(cell)) return Kind::drawn;
    return columns[column]->isEditable() ? Kind::text : Kind::nothing;
}

bool QtCellActions::isFor(const QKeyEvent& event, const QModelIndex& index) const {
    const Kind kind = kindAt(index);
    if (kind == Kind::nothing) return false;
    const auto modifiers = event.modifiers() & keyModifiers;
    switch (event.key()) {
        case Qt::Key_Space: return !modifiers;
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_F2: return !modifiers && kind != Kind::toggle;
        case Qt::Key_F4: return !modifiers && kind == Kind::popUp;
        case Qt::Key_Down: return modifiers == Qt::AltModifier && kind == Kind::popUp;
        default: return false;
    }
}

void QtCellActions::act(const QModelIndex& index) {
    const Kind kind = kindAt(index);
    if (kind == Kind::popUp) {
        openMenu(index);
    } else if (kind == Kind::toggle) {
        released(index);
    } else {
        doubleClicked(index, nullptr);
    }
}

void QtCellActions::pressed(const QModelIndex& index) {
    if (kindAt(index) == Kind::popUp) openMenu(index);
}

void QtCellActions::released(const QModelIndex& index) {
    if (kindAt(index) != Kind::toggle) return;
    guarded("A click in a table", [kept = table_, column = index.column(), row = index.row()] {
        kept->userClicked(column, row);
    });
}

void QtCellActions::doubleClicked(const QModelIndex& index, const NSEventRef& event) {
    const Kind kind = kindAt(index);
    if (!table_ || kind == Kind::toggle) return;
    if (kind == Kind::popUp) return openMenu(index);
    guarded("A double click in a table",
            [&event, kept = table_, column = index.column(), row = index.row()] {
                kept->userDoubleClicked(column, row, event);
            });
}

void QtCellActions::openMenu(const QModelIndex& index) {
    guarded("A cell's menu", [&] {
        const auto kept = table_;
        const auto cell = std::dynamic_pointer_cast<NSPopUpButtonCell>(
            kept->preparedCell(index.column(), index.row()));
        if (!cell || !cell->menu() || !cell->isEnabled()) return;
        // The menu goes with the view at the latest.
        const auto chosen = [this, column = index.column(), row = index.row()](NSMenuItem& item) {
            const auto table = table_;
            if (table && takesInput_()) table->userChose(item, column, row);
        };
        auto* menu = new QtCellMenu(cell->menu(), cell->pullsDown() ? 1 : 0, chosen, &view_);
        const QRect rect = view_.visualRect(index);
        menu->open(QRect(view_.viewport()->mapToGlobal(rect.topLeft()), rect.size()));
    });
}

}  // namespace velmora
