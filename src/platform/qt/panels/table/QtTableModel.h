#pragma once

#include <QAbstractTableModel>
#include <memory>

#include "platform/appkit/controls/NSTableView.h"

namespace velmora {

/// A table as the toolkit's item views ask for it: values are asked for one at a time, when they
/// are shown or searched.
class QtTableModel final : public QAbstractTableModel {
public:
    QtTableModel(std::shared_ptr<NSTableView> table, QObject* parent);

    /// Nothing is asked of the table from here on; the rows stay, empty.
    void letGo() { table_ = nullptr; }

    /// There is another number of rows, or their values are others. What is gone is gone at the
    /// end, so that a view stays where it is.
    void reload();
    void columnsChanged();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    /// The text that a cell shows. Of a check box the state, and for accessibility the title of
    /// its column.
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    /// Only the cell that the table lets the user edit can be edited.
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    QVariant valueOf(const QModelIndex& index, int role) const;

    std::shared_ptr<NSTableView> table_;
    int rows_ = 0;
    int columns_ = 0;
};

}  // namespace velmora
