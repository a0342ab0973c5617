#include "platform/qt/panels/table/QtTable.h"

#include <QApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPointer>
#include <QScrollBar>
#include <algorithm>

#include "platform/qt/base/QtGuard.h"
#include "platform/qt/panels/controls/QtControlEvents.h"
#include "platform/runtime/Raised.h"

namespace velmora {

namespace {

/// How high a table wants to be, in points, above which it has no more rows.
constexpr int comfortableHeight = 260;

constexpr auto keyModifiers =
    Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
constexpr auto extendingModifiers = Qt::ShiftModifier | Qt::ControlModifier;

std::vector<int> rowsOf(const QItemSelection& selection) {
    std::vector<int> rows;
    for (const QItemSelectionRange& range : selection) {
        for (int row = range.top(); row <= range.bottom(); ++row) rows.push_back(row);
    }
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

}  // namespace

QtTable::QtTable(std::shared_ptr<NSTableView> table, std::function<bool()> takesInput,
                 QWidget* parent)
    : QTableView(parent),
      table_(std::move(table)),
      takesInput_(std::move(takesInput)),
      model_(table_, this),
      cells_(table_, this),
      columns_(*horizontalHeader(), table_),
      actions_(*this, table_, takesInput_) {
    setModel(&model_);
    setItemDelegate(&cells_);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    setCornerButtonEnabled(false);
    setSelectionBehavior(SelectRows);
    setEditTriggers(NoEditTriggers);
    setAlternatingRowColors(true);
    setTabKeyNavigation(false);
    setWordWrap(false);
    table_->setTablePeer(this);
    columnsChanged();
    needsDisplay();
    selectionChanged();
}

QtTable::~QtTable() {
    letGo();
    // Before the model goes, of which it is.
    setModel(nullptr);
}

void QtTable::letGo() {
    if (table_ && table_->peer() == this) table_->setTablePeer(nullptr);
    drag_ = nullptr;
    table_ = nullptr;
    model_.letGo();
    cells_.letGo();
    columns_.letGo();
    actions_.letGo();
}

// --- what the table says
// -------------------------------------------------------------------------

void QtTable::needsDisplay() {
    setEnabled(table_->isEnabled());
    viewport()->update();
}

void QtTable::reloadData() {
    {
        const velmora::Raised applying(applying_);
        model_.reload();
    }
    // The text of another row is not to be lost to what was typed for the one that was there.
    const QModelIndex edited = model_.index(table_->editedRow(), table_->editedColumn());
    if (QWidget* field = edited.isValid() ? indexWidget(edited) : nullptr) {
        if (!cells_.isEditorFor(*field, edited)) {
            closeEditor(field, QAbstractItemDelegate::RevertModelCache);
        }
    }
    selectionChanged();
    viewport()->update();
}

void QtTable::columnsChanged() {
    const int before = model_.columnCount();
    model_.columnsChanged();
    columns_.show();
    if (model_.columnCount() != before) selectionChanged();
    // A line of the host's texts has room in any case.
    const int height = qMax(qRound(table_->rowHeight()), fontMetrics().height() + 2);
    QHeaderView& rows = *verticalHeader();
    if (rows.defaultSectionSize() != height) {
        rows.setMinimumSectionSize(height);
        rows.setDefaultSectionSize(height);
    }
    setShowGrid(table_->drawsGrid());
    viewport()->update();
}

void QtTable::selectionChanged() {
    const velmora::Raised applying(applying_);
    setSelectionMode(table_->allowsMultipleSelection() ? ExtendedSelection : SingleSelection);
    QItemSelection selection;
    const int lastColumn = model_.columnCount() - 1;
    const std::vector<int>& rows = table_->selectedRowEnumerator();
    for (std::size_t i = 0; i < rows.size() && rows[i] < model_.rowCount();) {
        const int first = rows[i];
        int last = first;
        while (++i < rows.size() && rows[i] == last + 1 && rows[i] < model_.rowCount()) ++last;
        selection.select(model_.index(first, 0), model_.index(last, lastColumn));
    }
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    const int row = table_->selectedRow();
    if (row == currentIndex().row()) return;
    const QModelIndex current = model_.index(row, qMax(currentIndex().column(), 0));
    if (current.isValid()) {
        selectionModel()->setCurrentIndex(current, QItemSelectionModel::NoUpdate);
    } else {
        selectionModel()->clearCurrentIndex();
    }
}

void QtTable::scrollRowToVisible(int row) {
    rowToShow_ = isVisible() ? -1 : row;
    if (isVisible()) scrollTo(model_.index(row, qMax(currentIndex().column(), 0)));
}

void QtTable::editCell(int column, int row, bool select) {
    const QModelIndex index = model_.index(row, column);
    if (!index.isValid()) return;
    setFocus();
    setCurrentIndex(index);
    edit(index);
    auto* field = qobject_cast<QLineEdit*>(indexWidget(index));
    if (!field) {
        table_->userGaveUpEditing();
    } else if (!select) {
        field->end(false);
    }
}

void QtTable::handleEvent(const NSEvent& event) {
    const auto* given = dynamic_cast<const QtControlEvent*>(&event);
    if (!given) return;
    QEvent& original = given->original();
    if (original.type() == QEvent::KeyPress) {
        handleKey(static_cast<QKeyEvent&>(original));
    } else if (original.type() == QEvent::MouseButtonPress) {
        QTableView::mousePressEvent(static_cast<QMouseEvent*>(&original));
    }
}

QSize QtTable::sizeHint() const {
    if (!table_) return QTableView::sizeHint();
    float width = 0;
    for (const NSTableColumnRef& column : table_->tableColumns()) width += column->width();
    const int frame = 2 * frameWidth();
    return {qRound(width) + frame + verticalScrollBar()->sizeHint().width(),
            comfortableHeight + frame + horizontalHeader()->sizeHint().height()};
}

// --- keys
// ----------------------------------------------------------------------------------------

void QtTable::keyPressEvent(QKeyEvent* event) {
    const auto kept = table_;
    const bool isEscape = event->key() == Qt::Key_Escape && !(event->modifiers() & keyModifiers);
    if (drag_) {
        if (isEscape) drag_ = nullptr;
        return;
    }
    // What a field that is typed in has no use for is nobody's.
    if (!kept || !takesInput_() || state() == EditingState) return;
    if (isEscape) return event->ignore();
    guarded("A key in a table", [&] {
        const NSEventRef key = keyEventFor(*event);
        if (!key) return QTableView::keyPressEvent(event);
        kept->keyDown(key);
    });
}

void QtTable::handleKey(QKeyEvent& event) {
    const auto modifiers = event.modifiers() & keyModifiers;
    const bool isVertical = event.key() == Qt::Key_Up || event.key() == Qt::Key_Down;
    if (isVertical && modifiers == Qt::AltModifier && !table_->registeredDraggedTypes().empty()) {
        moveRows(event.key() == Qt::Key_Up ? -1 : 1);
    } else if (const QPersistentModelIndex index = currentIndex(); actions_.isFor(event, index)) {
        const QPointer<QtTable> self = this;
        selectAlone(index);
        if (self) actions_.act(index);
    } else if (event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter) {
        // The panel's default button has it.
        event.ignore();
    } else if (event.key() != Qt::Key_Space || modifiers) {
        QTableView::keyPressEvent(&event);
    }
}

void QtTable::moveRows(int by) {
    const auto kept = table_;
    const std::vector<int> rows = kept->selectedRowEnumerator();
    if (rows.empty()) return;
    const int place = by < 0 ? rows.front() - 1 : rows.back() + 2;
    if (place < 0 || place > kept->numberOfRows() || !kept->userBeganDrag(rows)) return;
    const QPointer<QtTable> self = this;
    kept->userDropped(place, NSTableViewDropAbove);
    kept->userEndedDrag();
    if (self && currentIndex().isValid()) scrollTo(currentIndex());
}

// --- editing
// -------------------------------------------------------------------------------------

void QtTable::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) {
    const bool goesOn = hint == QAbstractItemDelegate::EditNextItem ||
                        hint == QAbstractItemDelegate::EditPreviousItem;
    QTableView::closeEditor(editor, goesOn ? QAbstractItemDelegate::NoHint : hint);
}

// --- the selection
// -------------------------------------------------------------------------------

void QtTable::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
    QTableView::selectionChanged(selected, deselected);
    tellOfSelection();
}

void QtTable::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QTableView::currentChanged(current, previous);
    // The toolkit sometimes selects a row first and makes it the current one then.
    if (table_ && table_->isRowSelected(current.row())) tellOfSelection();
}

void QtTable::tellOfSelection() {
    const auto kept = table_;
    if (!kept || applying_) return;
    guarded("A selection in a table", [&] {
        kept->userSelectedRows(rowsOf(selectionModel()->selection()), currentIndex().row());
    });
}

void QtTable::selectAlone(const QModelIndex& index) {
    if (!table_ || table_->isRowSelected(index.row())) return;
    selectionModel()->setCurrentIndex(
        index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

// --- the mouse
// -----------------------------------------------------------------------------------

void QtTable::otherButtonPressed(QMouseEvent& event) {
    const auto kept = table_;
    guarded("A button in a table",
            [&] { kept->otherMouseDown(pressEventFor(event, *viewport())); });
}

void QtTable::mousePressEvent(QMouseEvent* event) {
    pressed_ = QModelIndex();
    if (!table_ || !takesInput_()) return;
    if (event->button() != Qt::LeftButton && event->button() != Qt::RightButton) {
        return otherButtonPressed(*event);
    }
    const QPersistentModelIndex index = indexAt(event->pos());
    const bool acts =
        event->button() == Qt::LeftButton && !(event->modifiers() & extendingModifiers);
    const QPointer<QtTable> self = this;
    QTableView::mousePressEvent(event);
    if (!self || !acts) return;
    pressed_ = index;
    pressedAt_ = event->pos();
    actions_.pressed(index);
}

void QtTable::mouseDoubleClickEvent(QMouseEvent* event) {
    const QPersistentModelIndex index = indexAt(event->pos());
    const bool isPlain =
        event->button() == Qt::LeftButton && !(event->modifiers() & extendingModifiers);
    if (!isPlain || !index.isValid()) return mousePressEvent(event);
    if (!table_ || !takesInput_()) return;
    const NSEventRef press = pressEventFor(*event, *viewport());
    const QPointer<QtTable> self = this;
    selectAlone(index);
    if (!self) return;
    pressed_ = index;
    pressedAt_ = event->pos();
    actions_.doubleClicked(index, press);
}

void QtTable::mouseMoveEvent(QMouseEvent* event) {
    const bool isHeld = event->buttons() & Qt::LeftButton;
    if (drag_ && !isHeld) drag_ = nullptr;
    if (drag_) return drag_->moveTo(event->pos());
    if (!isHeld || !table_ || table_->registeredDraggedTypes().empty()) {
        return QTableView::mouseMoveEvent(event);
    }
    const int distance = (event->pos() - pressedAt_).manhattanLength();
    if (!pressed_.isValid() || distance < QApplication::startDragDistance()) return;
    beginDrag();
    if (drag_) drag_->moveTo(event->pos());
}

void QtTable::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton && event->button() != Qt::RightButton) return;
    if (drag_ && event->button() == Qt::LeftButton) {
        const std::unique_ptr<QtRowDrag> drag = std::move(drag_);
        drag->drop();
        return;
    }
    const QPointer<QtTable> self = this;
    QTableView::mouseReleaseEvent(event);
    if (!self || event->button() != Qt::LeftButton) return;
    const QPersistentModelIndex index = std::exchange(pressed_, QPersistentModelIndex());
    if (!index.isValid() || indexAt(event->pos()) != index || !takesInput_()) return;
    actions_.released(index);
}

void QtTable::beginDrag() {
    const auto kept = table_;
    pressed_ = QModelIndex();
    if (!takesInput_()) return;
    guarded("A drag", [&] {
        if (!kept->userBeganDrag(kept->selectedRowEnumerator())) return;
        drag_ = std::make_unique<QtRowDrag>(*this, kept);
    });
}

// --- the widget
// ----------------------------------------------------------------------------------

void QtTable::paintEvent(QPaintEvent* event) {
    QTableView::paintEvent(event);
    if (drag_) drag_->paint();
}

void QtTable::resizeEvent(QResizeEvent* event) {
    QTableView::resizeEvent(event);
    columns_.fit(viewport()->width());
}

void QtTable::showEvent(QShowEvent* event) {
    QTableView::showEvent(event);
    const int row = std::exchange(rowToShow_, -1);
    if (row >= 0) scrollTo(model_.index(row, 0));
}

void QtTable::hideEvent(QHideEvent* event) {
    drag_ = nullptr;
    QTableView::hideEvent(event);
}

}  // namespace velmora
