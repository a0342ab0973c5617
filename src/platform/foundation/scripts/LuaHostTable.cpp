#include "platform/foundation/scripts/LuaHostTable.h"

#include "platform/foundation/scripts/LuaState.h"

namespace velmora {

// LuaState.h says what holds for the functions here.

namespace {

struct Argument {
    const char* begin;
    std::size_t size;
    operator std::string() const { return {begin, size}; }
};

Argument textArgument(lua_State* state, int index) {
    Argument argument{nullptr, 0};
    argument.begin = LuaState::of(state).lua.luaL_checklstring(state, index, &argument.size);
    return argument;
}

void check(lua_State* state, bool done) {
    if (!done) LuaState::of(state).lua.luaL_error(state, "the application could not do this");
}

int run(lua_State* state) {
    const Argument path = textArgument(state, 1);
    LuaState& self = LuaState::of(state);
    self.beginCall(state, path.size);
    self.beginAct(state);
    bool ran = false;
    const std::uint64_t before = LuaState::processorTime();
    check(state, self.callHost([&](ScriptHost& host) { ran = host.runMenuItem(path); }));
    if (ran) {
        // A panel may have been open meanwhile.
        self.forgetTimeSince(before);
    } else {
        self.takeActBack();
    }
    self.lua.lua_pushboolean(state, ran ? 1 : 0);
    return 1;
}

void setText(lua_State* state, const char* field, const std::string& text) {
    const LuaLibrary& lua = LuaState::of(state).lua;
    lua.lua_pushlstring(state, text.data(), text.size());
    lua.lua_setfield(state, -2, field);
}

int menu(lua_State* state) {
    constexpr int fields = 4;
    LuaState& self = LuaState::of(state);
    self.beginCall(state, 0);
    check(state, self.callHost([&](ScriptHost& host) { self.items = host.menuItems(); }));
    self.lua.lua_createtable(state, static_cast<int>(self.items.size()), 0);
    for (std::size_t i = 0; i < self.items.size(); ++i) {
        const ScriptHost::MenuItem& item = self.items[i];
        self.lua.lua_createtable(state, 0, fields);
        setText(state, "path", item.path);
        setText(state, "title", item.title);
        setText(state, "key", item.keyEquivalent);
        self.lua.lua_pushboolean(state, item.enabled ? 1 : 0);
        self.lua.lua_setfield(state, -2, "enabled");
        self.lua.lua_rawseti(state, -2, static_cast<lua_Integer>(i) + 1);
    }
    return 1;
}

int type(lua_State* state) {
    const Argument text = textArgument(state, 1);
    LuaState& self = LuaState::of(state);
    self.beginCall(state, text.size);
    check(state, self.callHost([&](ScriptHost& host) { host.type(text); }));
    return 0;
}

int beep(lua_State* state) {
    LuaState& self = LuaState::of(state);
    self.beginCall(state, 0);
    self.beginAct(state);
    check(state, self.callHost([](ScriptHost& host) { host.beep(); }));
    return 0;
}

int log(lua_State* state) {
    const Argument line = textArgument(state, 1);
    LuaState& self = LuaState::of(state);
    self.beginCall(state, line.size);
    check(state, self.callHost([&](ScriptHost& host) { host.log(line); }));
    return 0;
}

int processName(lua_State* state) {
    LuaState& self = LuaState::of(state);
    self.beginCall(state, 0);
    check(state, self.callHost([&](ScriptHost& host) { self.text = host.processName(); }));
    self.lua.lua_pushlstring(state, self.text.data(), self.text.size());
    return 1;
}

int open(lua_State* state) {
    const Argument address = textArgument(state, 1);
    LuaState& self = LuaState::of(state);
    self.beginCall(state, address.size);
    self.beginAct(state);
    check(state, self.callHost([&](ScriptHost& host) { host.open(address); }));
    return 0;
}

constexpr luaL_Reg functions[] = {{"run", &run},   {"menu", &menu},   {"type", &type},
                                  {"beep", &beep}, {"log", &log},     {"processName", &processName},
                                  {"open", &open}, {nullptr, nullptr}};

}  // namespace

void pushLuaHostTable(lua_State* state) {
    const LuaLibrary& lua = LuaState::of(state).lua;
    lua.lua_createtable(state, 0, static_cast<int>(std::size(functions)) - 1);
    lua.luaL_setfuncs(state, functions, 0);
}

}  // namespace velmora
