#pragma once

#include <QMenu>
#include <functional>

#include "platform/appkit/NSMenu.h"

namespace velmora {

/// What a pop-up cell opens: the cell's menu, of which each level is built when it opens, for the
/// menu may be a copy of all that an application has. It is none of the host's menus.
class QtCellMenu final : public QMenu {
public:
    /// The item is one of the menu, or of a menu below it.
    using Chosen = std::function<void(NSMenuItem& item)>;

    /// Lists the items from the `first` on.
    QtCellMenu(NSMenuRef menu, int first, Chosen chosen, QWidget* parent);

    /// Opens it under the rectangle of the screen, and above where there is no room below. It
    /// deletes itself once it has closed.
    void open(const QRect& under);

private:
    void fill();
    void add(const NSMenuItemRef& item);

    NSMenuRef menu_;
    int first_;
    Chosen chosen_;
    bool filled_ = false;
};

}  // namespace velmora
