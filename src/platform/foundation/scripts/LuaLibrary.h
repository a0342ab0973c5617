#pragma once

#include <lua5.4/lauxlib.h>
#include <lua5.4/lua.h>
#include <lua5.4/lualib.h>

#include <string>

namespace velmora {

/// Lua's functions that we call, under their own names. The library is loaded only when a script
/// asks for it, and stays; it is never linked, so that no host depends on it.
struct LuaLibrary {
    /// Null when it cannot be loaded; `problem` then says why.
    static const LuaLibrary* load(std::string& problem);

// One list names them for the declarations here and for the look-up.
#define VELMORA_LUA_FUNCTIONS(f)                                                                   \
    f(lua_newstate) f(lua_close) f(lua_atpanic) f(lua_pcallk) f(lua_callk) f(lua_error)            \
        f(lua_sethook) f(lua_compare) f(lua_getstack) f(lua_getinfo) f(lua_createtable)            \
            f(lua_setglobal) f(lua_setfield) f(lua_rawseti) f(lua_pushvalue) f(lua_rotate)         \
                f(lua_getmetatable) f(lua_rawget) f(lua_pushnil) f(lua_pushboolean)                \
                    f(lua_pushlightuserdata) f(lua_pushlstring) f(lua_pushstring)                  \
                        f(lua_pushcclosure) f(lua_gettop) f(lua_settop) f(lua_tolstring)           \
                            f(lua_touserdata) f(luaL_checklstring) f(luaL_checktype) f(luaL_error) \
                                f(luaL_loadbufferx) f(luaL_requiref) f(luaL_setfuncs)              \
                                    f(luaL_tolstring) f(luaopen_base) f(luaopen_coroutine)         \
                                        f(luaopen_math) f(luaopen_os) f(luaopen_string)            \
                                            f(luaopen_table) f(luaopen_utf8)

// A member's name cannot stand in parentheses.
#define VELMORA_LUA_MEMBER(name) \
    decltype(&::name) name = nullptr;  // NOLINT(bugprone-macro-parentheses): a name is declared
    VELMORA_LUA_FUNCTIONS(VELMORA_LUA_MEMBER)
#undef VELMORA_LUA_MEMBER
};

}  // namespace velmora
