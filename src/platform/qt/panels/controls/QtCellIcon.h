#pragma once

#include <QIcon>
#include <memory>

#include "platform/appkit/controls/NSCell.h"

namespace velmora {

/// An icon that shows whatever picture the cell has when it is drawn, a button cell's by its state.
QIcon cellIcon(const NSCellRef& cell);

/// The size at which the cell's picture is shown, in points; empty without one.
QSize cellIconSize(const NSCell& cell);

}  // namespace velmora
