#pragma once

#include <QPersistentModelIndex>
#include <QTableView>
#include <functional>
#include <memory>

#include "platform/appkit/controls/NSTableView.h"
#include "platform/qt/panels/table/QtCellActions.h"
#include "platform/qt/panels/table/QtRowDrag.h"
#include "platform/qt/panels/table/QtTableCells.h"
#include "platform/qt/panels/table/QtTableColumns.h"
#include "platform/qt/panels/table/QtTableModel.h"

namespace velmora {

/// The widget that shows a table of ours, in the host's own style. What the mouse does, keys do
/// too: Space, Return and F2 act on the current cell, Alt+Up and Alt+Down move the selected rows.
class QtTable final : public QTableView, public TablePeer {
public:
    /// What the user does counts while `takesInput()`.
    QtTable(std::shared_ptr<NSTableView> table, std::function<bool()> takesInput, QWidget* parent);
    ~QtTable() override;
    QtTable(const QtTable&) = delete;
    QtTable& operator=(const QtTable&) = delete;

    /// Null once it has been let go.
    const std::shared_ptr<NSTableView>& table() const { return table_; }
    /// The table is no longer shown here; the widget may still be in the middle of an event.
    void letGo();

    // Nothing of ours draws over a table.
    void draw() override {}
    void needsDisplay() override;
    void reloadData() override;
    void columnsChanged() override;
    void selectionChanged() override;
    void scrollRowToVisible(int row) override;
    void editCell(int column, int row, bool select) override;
    /// One that was made of the toolkit's.
    void handleEvent(const NSEvent& event) override;

    QSize sizeHint() const override;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void selectionChanged(const QItemSelection& selected,
                          const QItemSelection& deselected) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    /// The field is left to no other: Tab ends the editing.
    void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;

private:
    void handleKey(QKeyEvent& event);
    void otherButtonPressed(QMouseEvent& event);
    void tellOfSelection();
    void selectAlone(const QModelIndex& index);
    void moveRows(int by);
    void beginDrag();

    std::shared_ptr<NSTableView> table_;
    std::function<bool()> takesInput_;
    QtTableModel model_;
    QtTableCells cells_;
    QtTableColumns columns_;
    QtCellActions actions_;
    std::unique_ptr<QtRowDrag> drag_;
    /// The cell in which the left button went down.
    QPersistentModelIndex pressed_;
    QPoint pressedAt_;
    /// The row to be seen once the widget shows; -1 for none.
    int rowToShow_ = -1;
    /// The table's selection is being shown.
    bool applying_ = false;
};

}  // namespace velmora
