#include "platform/qt/panels/table/QtTableModel.h"

#include <QHeaderView>
#include <QStyle>
#include <QTableView>
#include <algorithm>

#include "platform/appkit/controls/NSPopUpButtonCell.h"
#include "platform/qt/base/QtGuard.h"

namespace velmora {

namespace {

/// The header's font, smaller where a title would not fit into its column.
QFont fittingFont(const QHeaderView& header, const QString& title, float width) {
    constexpr qreal smallest = 0.6;
    QFont font = header.font();
    const int margins =
        2 * (header.style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, &header) + 1);
    const qreal wanted = QFontMetricsF(font).horizontalAdvance(title);
    const qreal room = std::max<qreal>(static_cast<qreal>(width) - margins, 1);
    if (wanted <= room) return font;
    font.setPointSizeF(QFontInfo(font).pointSizeF() * std::max(smallest, room / wanted));
    return font;
}

}  // namespace

QtTableModel::QtTableModel(std::shared_ptr<NSTableView> table, QObject* parent)
    : QAbstractTableModel(parent),
      table_(std::move(table)),
      rows_(table_->numberOfRows()),
      columns_(static_cast<int>(table_->tableColumns().size())) {}

void QtTableModel::reload() {
    if (!table_) return;
    const int wanted = table_->numberOfRows();
    if (wanted > rows_) {
        beginInsertRows({}, rows_, wanted - 1);
        rows_ = wanted;
        endInsertRows();
    } else if (wanted < rows_) {
        beginRemoveRows({}, wanted, rows_ - 1);
        rows_ = wanted;
        endRemoveRows();
    }
    if (rows_ > 0 && columns_ > 0) Q_EMIT dataChanged(index(0, 0), index(rows_ - 1, columns_ - 1));
}

void QtTableModel::columnsChanged() {
    if (!table_) return;
    const auto wanted = static_cast<int>(table_->tableColumns().size());
    if (wanted != columns_) {
        beginResetModel();
        columns_ = wanted;
        endResetModel();
    } else if (columns_ > 0) {
        Q_EMIT headerDataChanged(Qt::Horizontal, 0, columns_ - 1);
    }
}

int QtTableModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : rows_;
}

int QtTableModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : columns_;
}

QVariant QtTableModel::data(const QModelIndex& index, int role) const {
    QVariant value;
    switch (role) {
        case Qt::DisplayRole:
        case Qt::AccessibleTextRole:
        case Qt::ToolTipRole:
        case Qt::CheckStateRole: break;
        default: return value;
    }
    guarded("Asking for a table's value", [&] { value = valueOf(index, role); });
    return value;
}

QVariant QtTableModel::valueOf(const QModelIndex& index, int role) const {
    const auto kept = table_;
    const NSCellRef cell = kept ? kept->preparedCell(index.column(), index.row()) : nullptr;
    if (!cell) return {};
    std::string text = role == Qt::DisplayRole ? cell->stringValue() : cell->spokenValue();
    // A tool tip explains what is shown, and does not repeat it.
    if (role == Qt::ToolTipRole && text == cell->stringValue()) return {};
    if (const auto* popUp = dynamic_cast<const NSPopUpButtonCell*>(cell.get())) {
        text = popUp->faceTitle();
    } else if (dynamic_cast<const NSButtonCell*>(cell.get())) {
        if (role == Qt::CheckStateRole) {
            return cell->state() != NSOffState ? Qt::Checked : Qt::Unchecked;
        }
        if (role == Qt::DisplayRole) return {};
        return headerData(index.column(), Qt::Horizontal, Qt::DisplayRole);
    }
    return role == Qt::CheckStateRole ? QVariant() : QString::fromStdString(text);
}

QVariant QtTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    const bool isTitle = role == Qt::DisplayRole || role == Qt::ToolTipRole;
    if (!table_ || orientation != Qt::Horizontal || (!isTitle && role != Qt::FontRole)) return {};
    const auto& columns = table_->tableColumns();
    if (section < 0 || section >= static_cast<int>(columns.size())) return {};
    const NSTableColumn& column = *columns[static_cast<std::size_t>(section)];
    const QString title = QString::fromStdString(column.headerCell()->stringValue());
    const auto* view = qobject_cast<const QTableView*>(QObject::parent());
    if (isTitle || !view) return isTitle ? QVariant(title) : QVariant();
    return fittingFont(*view->horizontalHeader(), title, column.width());
}

Qt::ItemFlags QtTableModel::flags(const QModelIndex& index) const {
    Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    const bool isEdited = table_ && index.isValid() && table_->editedRow() == index.row() &&
                          table_->editedColumn() == index.column();
    flags.setFlag(Qt::ItemIsEditable, isEdited);
    if (!table_ || index.column() < 0 || index.column() >= columns_) return flags;
    const NSCell* cell =
        table_->tableColumns()[static_cast<std::size_t>(index.column())]->dataCell().get();
    const bool isToggle =
        dynamic_cast<const NSButtonCell*>(cell) && !dynamic_cast<const NSPopUpButtonCell*>(cell);
    flags.setFlag(Qt::ItemIsUserCheckable, isToggle);
    return flags;
}

}  // namespace velmora
