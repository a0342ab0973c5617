#pragma once

#include <memory>
#include <string>

#include "platform/appkit/controls/NSTextFieldCell.h"

namespace velmora {

class NSTableView;

/// A column of a table: by its identifier the data source knows which value of a row it shows.
/// Widths are in points.
class NSTableColumn final : public NSObject {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// Editable and resizable, with a text cell.
    explicit NSTableColumn(std::string identifier);

    const std::string& identifier() const { return identifier_; }

    /// Its string value is what stands above the column.
    const NSTextFieldCellRef& headerCell() const { return headerCell_; }

    /// Shows every row of the column in turn, so it keeps nothing of a row.
    const NSCellRef& dataCell() const { return dataCell_; }
    void setDataCell(NSCellRef cell);

    float width() const { return width_; }
    /// Not less than the least width.
    void setWidth(float width);
    float minWidth() const { return minWidth_; }
    void setMinWidth(float width);

    /// Whether the user may edit its cells, where these are texts.
    bool isEditable() const { return editable_; }
    void setEditable(bool editable);
    /// Whether its width may change, by the user and when the table fits its columns.
    bool isResizable() const { return resizable_; }
    void setResizable(bool resizable);

    // For the table

    /// Null when it goes.
    void setTableView(NSTableView* table) { table_ = table; }

private:
    void changed();

    std::string identifier_;
    NSTextFieldCellRef headerCell_ = std::make_shared<NSTextFieldCell>();
    NSCellRef dataCell_ = std::make_shared<NSTextFieldCell>();
    NSTableView* table_ = nullptr;
    float width_ = 100;
    float minWidth_ = 10;
    bool editable_ = true;
    bool resizable_ = true;
};

using NSTableColumnRef = std::shared_ptr<NSTableColumn>;

}  // namespace velmora
