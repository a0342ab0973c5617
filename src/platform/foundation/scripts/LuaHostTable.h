#pragma once

struct lua_State;

namespace velmora {

/// Pushes a table of functions by which a script reaches its host: docs/scripts.md describes them.
/// Raises Lua's errors.
void pushLuaHostTable(lua_State* state);

}  // namespace velmora
