#pragma once

#include <QFont>

#include "platform/appkit/drawing/NSFont.h"

namespace velmora {

/// The host's font for what is given, `base` being the one that it uses there: 13 points, the
/// platform's size for controls, are the host's own size, whatever that is.
QFont qtFont(const NSFont& font, const QFont& base);

}  // namespace velmora
