#pragma once

#include "platform/appkit/NSScrollView.h"

namespace velmora {

/// Scrolls by the deltas of the event, in lines; a positive one to the left or up. That a scroll
/// view responds to it is what makes it take the events that are made from the mouse's motion.
void velmoraScroll(NSScrollView& scrollView, const Id& event);

}  // namespace velmora
