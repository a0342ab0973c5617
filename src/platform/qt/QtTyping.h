#pragma once

namespace velmora {

class NSEvent;

/// Types into whatever has the focus what a key-down of ours says: all its characters as one
/// insertion, as an input method would; a Return, Tab or Space by its key code as a press and a
/// release of that key. A key-up of ours has nothing left to do.
void typeInFocus(const NSEvent& keyDown);

}  // namespace velmora
