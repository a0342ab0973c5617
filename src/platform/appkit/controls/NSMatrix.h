#pragma once

#include <memory>
#include <vector>

#include "platform/appkit/controls/NSButtonCell.h"
#include "platform/appkit/controls/NSControl.h"
#include "platform/appkit/controls/NSTextFieldCell.h"

namespace velmora {

/// What a click on a cell of a matrix does. In a radio matrix the cell becomes the one that is
/// selected and on. In a tracking one each cell is a check box for itself. In a list, here of
/// texts, nothing.
enum NSMatrixMode { NSRadioModeMatrix = 0, NSListModeMatrix = 2, NSTrackModeMatrix = 3 };

/// Rows and columns of cells of one kind: button cells, or text cells in a list. Its action goes
/// out when the user has clicked on a cell; all cells share it. The rows may be shown far apart:
/// see NSContentView::MatrixRow.
class NSMatrix final : public NSControl {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// The cells have the tags 0, 1, … row after row, and nothing is selected.
    NSMatrix(NSMatrixMode mode, int rows, int columns);
    ~NSMatrix() override;

    NSMatrixMode mode() const { return mode_; }
    int numberOfRows() const { return rows_; }
    int numberOfColumns() const { return columns_; }

    /// Row after row.
    const std::vector<NSCellRef>& cells() const { return cells_; }
    /// Null outside.
    NSCellRef cellAtRow_column(int row, int column) const;
    /// The first cell with the tag, or null.
    NSCellRef cellWithTag(int tag) const;

    /// The cell that was selected or clicked last; null before the first.
    NSCellRef selectedCell() const { return selected_; }
    /// Selects the first cell with the tag; without one the selection stays and the result is
    /// false.
    bool selectCellWithTag(int tag);

    // For desktops

    /// The user has clicked on the cell; nothing outside, in a list, and while the matrix or the
    /// cell is not enabled.
    void userClicked(int row, int column);

private:
    void select(const NSCellRef& cell);

    NSMatrixMode mode_;
    int rows_;
    int columns_;
    std::vector<NSCellRef> cells_;
    NSCellRef selected_;
};

using NSMatrixRef = std::shared_ptr<NSMatrix>;

}  // namespace velmora
