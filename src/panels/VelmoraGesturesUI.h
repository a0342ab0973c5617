#pragma once

#include <string>

#include "panels/VelmoraCommonUI.h"

namespace velmora {

/// The panel in which gestures are defined. A double click on a gesture has the user draw it; while
/// one row is selected, a choice in any context menu of the application goes into that row instead
/// of running.
class VelmoraGesturesUI final : public VelmoraCommonUI {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    void additionalInitialization() override;

    /// Asks the user to draw the gesture of the row that learns.
    void learnGesture();
    /// What was drawn.
    void processGesture(const std::string& gesture);
    /// Ends the teaching of a gesture, and closes what asked for one.
    void cancelGestureInput(const Id& sender);

    void setInterceptMenus(bool intercept) { interceptMenus_ = intercept; }
    /// An item is to run; true when it was taken instead.
    bool menu_itemSelected(NSMenu& menu, int index);

    /// The table's double-click delegate; true for the gesture column.
    bool doubleClickInColumn_row(int column, int row);
    void tableViewSelectionDidChange(const NSNotification& notification);
    void windowWillClose(const NSNotification& notification) override;

private:
    void preview(const std::string& gesture);

    /// Asks for a gesture; made when it is first needed.
    NSPanelRef gesturePanel_;
    int learnRowIndex_ = 0;
    bool interceptMenus_ = false;
};

}  // namespace velmora
