#pragma once

#include "platform/appkit/controls/NSTableView.h"

namespace velmora {

/// The table of the management panels. It offers some input to its data source, with the selected
/// row, before it uses it itself: `otherMouseDown:inRow:` (`void(const NSEventRef&, int)`) extra
/// mouse buttons, `performKeyEquivalent:inRow:` (`bool(const NSEventRef&, int)`) keys with Command,
/// function keys and, as a null event, the forward-delete key.
class VelmoraTableView final : public NSTableView {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// Asked with `doubleClickInColumn:row:` (`bool(int, int)`) before a cell is edited; true when
    /// it has dealt with it. Not kept alive.
    void setDoubleClickDelegate(const Id& delegate) { doubleClickDelegate_ = delegate; }

    void otherMouseDown(const NSEventRef& event) override;
    void keyDown(const NSEventRef& event) override;
    /// Repeats of a held key count as dealt with.
    bool performKeyEquivalent(const NSEventRef& event) override;
    void editColumn_row_withEvent_select(int column, int row, const NSEventRef& event,
                                         bool select) override;
    /// The grid stays as it is.
    void setDrawsGrid(bool /*draws*/) override {}

private:
    /// The data source, when a row is selected and it responds; else null.
    Id capturing(Selector selector) const;

    std::weak_ptr<NSObject> doubleClickDelegate_;
};

}  // namespace velmora
