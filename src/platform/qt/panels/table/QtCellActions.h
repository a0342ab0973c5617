#pragma once

#include <QTableView>
#include <functional>
#include <memory>

#include "platform/appkit/controls/NSTableView.h"

class QKeyEvent;

namespace velmora {

/// What the user does with single cells of a table: opens the menu of one, switches one, begins to
/// edit one. Guarded calls; the view may be gone when one of them returns.
class QtCellActions final {
public:
    /// A choice from a menu counts while `takesInput()`.
    QtCellActions(QTableView& view, std::shared_ptr<NSTableView> table,
                  std::function<bool()> takesInput);

    /// Nothing is done from here on.
    void letGo() { table_ = nullptr; }

    /// Whether the key is for the cell: Space, for all but check boxes also Return and F2, and F4
    /// or Alt+Down for what opens a menu.
    bool isFor(const QKeyEvent& event, const QModelIndex& index) const;
    /// What such a key does.
    void act(const QModelIndex& index);

    // The left button

    void pressed(const QModelIndex& index);
    /// Over the cell in which it was pressed.
    void released(const QModelIndex& index);
    void doubleClicked(const QModelIndex& index, const NSEventRef& event);

private:
    enum class Kind { nothing, text, drawn, toggle, popUp };
    Kind kindAt(const QModelIndex& index) const;
    void openMenu(const QModelIndex& index);

    QTableView& view_;
    std::shared_ptr<NSTableView> table_;
    std::function<bool()> takesInput_;
};

}  // namespace velmora
