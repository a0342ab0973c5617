#pragma once

#include "platform/runtime/Class.h"

namespace velmora {

/// Exchanges the implementations of two instance methods of the class, which must be of one type: a
/// message of either name runs from then on what the other ran. Done twice, it is undone. Returns
/// the class. The class message `_XIM2:with:` of every class does the same.
/// Methods that are inherited become the class's own. With either one missing, or of different
/// types, nothing changes but for a line in the log.
Class* _XIM2_with(Class& receiver, Selector a, Selector b);  // NOLINT(*-reserved-identifier): given

}  // namespace velmora
