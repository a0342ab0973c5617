#pragma once

#include <QStyledItemDelegate>
#include <memory>

#include "platform/appkit/controls/NSTableView.h"

namespace velmora {

class NSButtonCell;

/// Shows the cells of a table, each by its column's cell with the row's value, in the host's style;
/// and the field in which a text is edited.
class QtTableCells final : public QStyledItemDelegate {
public:
    QtTableCells(std::shared_ptr<NSTableView> table, QObject* parent);

    /// Nothing is asked of the table from here on.
    void letGo() { table_ = nullptr; }

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    /// Its text is set when it is made: what comes while the user types does not change it.
    void setEditorData(QWidget* /*editor*/, const QModelIndex& /*index*/) const override {}
    void setModelData(QWidget* editor, QAbstractItemModel* model,
                      const QModelIndex& index) const override;
    void destroyEditor(QWidget* editor, const QModelIndex& index) const override;
    /// Whether the cell still has the text that it had when the field was made.
    bool isEditorFor(const QWidget& editor, const QModelIndex& index) const;

protected:
    // What the user does with a cell is the view's.
    bool editorEvent(QEvent* /*event*/, QAbstractItemModel* /*model*/,
                     const QStyleOptionViewItem& /*option*/,
                     const QModelIndex& /*index*/) override {
        return false;
    }

private:
    bool isEdited(const QModelIndex& index) const;

    std::shared_ptr<NSTableView> table_;
};

}  // namespace velmora
