#include "platform/foundation/scripts/LuaState.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <utility>

#include "platform/foundation/files/Characters.h"
#include "platform/foundation/scripts/LuaHostTable.h"

namespace velmora {

namespace {

/// How many instructions run between two calls of the hook: each may take as long as the largest
/// texts take to be joined or compared.
constexpr int hookInterval = 20;
/// Nanoseconds between two looks at the processor time.
constexpr std::uint64_t lookInterval = 1'000'000;
constexpr std::uint64_t nanosecondsPerInstruction = 50;

/// A call into the host.
constexpr std::uint64_t instructionsPerCall = 10'000;
constexpr std::size_t mostText = 16U << 20U;
constexpr int mostActs = 1000;

constexpr const char* tooLong = "the script has run for too long";
constexpr const char* tooMuchText = "the script has handed over more than 16 MiB of text";
constexpr const char* tooManyActs =
    "the script has handed over more than 1,000 commands, addresses and beeps";

/// Lua's name of the source: "=" and what messages and lines of ours begin with.
constexpr const char* sourceName = "=script";
constexpr std::string_view messageStart = "script:";

/// Where Lua runs code with the hook switched off, nothing could end it: in a finalizer, in the
/// handler of xpcall, and in the closing of a coroutine that the hook has ended. So finalizers are
/// refused, and the others are made of what has none of that. Programs of bytes could do anything.
/// Sorting calls a function for each comparison, so that the hook is called.
constexpr std::string_view prelude = R"lua(
local load, setmetatable, rawget, error, pcall = load, setmetatable, rawget, error, pcall
local type, select, tostring, tonumber = type, select, tostring, tonumber
local create, resume, concat = coroutine.create, coroutine.resume, table.concat
local log, isLess, sort, move = velmora.log, ..., table.sort, table.move

_G.load = function(chunk, name, mode, ...) return load(chunk, name, "t", ...) end
_G.dofile, _G.loadfile, _G.collectgarbage, _G.warn = nil, nil, nil, nil
string.dump = nil

_G.setmetatable = function(value, meta)
    if type(meta) == "table" and rawget(meta, "__gc") ~= nil then
        error("a script has no finalizers", 2)
    end
    return setmetatable(value, meta)
end

local function handled(handler, ok, ...)
    if ok then return true, ... end
    return false, handler(...)
end
_G.xpcall = function(f, handler, ...) return handled(handler, pcall(f, ...)) end

coroutine.close = nil
local function results(ok, ...)
    if ok then return ... end
    error((...), 0)
end
coroutine.wrap = function(f)
    local co = create(f)
    return function(...) return results(resume(co, ...)) end
end

_G.print = function(...)
    local texts = {}
    for i = 1, select("#", ...) do texts[i] = tostring((select(i, ...))) end
    log(concat(texts, "\t"))
end

table.sort = function(list, order)
    if order == nil then order = isLess end
    return sort(list, order)
end
table.move = function(from, first, last, ...)
    if (tonumber(last) or 0) - (tonumber(first) or 0) > 1e7 then
        error("too many elements to move", 2)
    end
    return move(from, first, last, ...)
end

os = {clock = os.clock, date = os.date, difftime = os.difftime, getenv = os.getenv,
      time = os.time}
)lua";

/// How many bytes of a message are kept. A longer one is not even copied.
constexpr std::size_t longest = 1000;

/// Cuts what nobody reads to its end, between two characters.
void shorten(std::string& message) {
    message.resize(wholeCharacters(message, longest).size());
}

std::uint64_t nanoseconds(clockid_t clock) noexcept {
    constexpr std::uint64_t second = 1'000'000'000;
    timespec time{};
    ::clock_gettime(clock, &time);
    return static_cast<std::uint64_t>(time.tv_sec) * second +
           static_cast<std::uint64_t>(time.tv_nsec);
}

/// Costs a tenth of the processor time.
std::uint64_t steadyTime() noexcept {
    return nanoseconds(CLOCK_MONOTONIC);
}

}  // namespace

LuaState::~LuaState() {
    if (state_) lua.lua_close(state_);
}

LuaState& LuaState::of(lua_State* state) {
    return **static_cast<LuaState**>(lua_getextraspace(state));
}

std::uint64_t LuaState::processorTime() noexcept {
    return nanoseconds(CLOCK_THREAD_CPUTIME_ID);
}

void* LuaState::allocate(void* self, void* block, std::size_t oldSize, std::size_t size) {
    auto& state = *static_cast<LuaState*>(self);
    // For a new block, Lua gives the kind of object in its place.
    if (!block) oldSize = 0;
    if (size > oldSize && size - oldSize > state.limits_.memory - state.memory_) return nullptr;
    if (size == 0) {
        std::free(block);
    } else {
        void* moved = std::realloc(block, size);
        // Making a block smaller must not fail.
        if (!moved && size > oldSize) return nullptr;
        if (moved) block = moved;
    }
    state.memory_ += size;
    state.memory_ -= oldSize;
    return size == 0 ? nullptr : block;
}

bool LuaState::isExhausted() noexcept {
    if (reason_ || instructions_ > limits_.instructions) return true;
    const std::uint64_t now = steadyTime();
    if (now - looked_ < lookInterval) return false;
    looked_ = now;
    return (processorTime() - started_) / nanosecondsPerInstruction > limits_.instructions;
}

void LuaState::setHook(lua_State* state, int interval) {
    lua.lua_sethook(state, &hook, LUA_MASKCOUNT | LUA_MASKCALL, interval);
}

void LuaState::hook(lua_State* state, lua_Debug* where) {
    LuaState& self = of(state);
    if (where->event == LUA_HOOKCOUNT) self.instructions_ += hookInterval;
    if (self.isExhausted()) self.end(state, tooLong);
}

void LuaState::end(lua_State* state, const char* reason) {
    if (!reason_) {
        reason_ = reason;
        line_ = lineOf(state);
    }
    setHook(state, 1);
    lua.lua_pushstring(state, reason_);
    lua.lua_error(state);
}

void LuaState::beginCall(lua_State* state, std::size_t textSize) {
    instructions_ += instructionsPerCall;
    if (isExhausted()) end(state, tooLong);
    if (textSize > mostText - handedText_) end(state, tooMuchText);
    handedText_ += textSize;
}

void LuaState::beginAct(lua_State* state) {
    if (acts_ == mostActs) end(state, tooManyActs);
    ++acts_;
}

int LuaState::isLess(lua_State* state) {
    const LuaLibrary& lua = of(state).lua;
    lua.lua_pushboolean(state, lua.lua_compare(state, 1, 2, LUA_OPLT));
    return 1;
}

int LuaState::setUp(lua_State* state) {
    const LuaLibrary& lua = of(state).lua;
    const std::array<luaL_Reg, 7> libraries{{{"_G", lua.luaopen_base},
                                             {"coroutine", lua.luaopen_coroutine},
                                             {"math", lua.luaopen_math},
                                             {"os", lua.luaopen_os},
                                             {"string", lua.luaopen_string},
                                             {"table", lua.luaopen_table},
                                             {"utf8", lua.luaopen_utf8}}};
    for (const luaL_Reg& library : libraries) {
        lua.luaL_requiref(state, library.name, library.func, 1);
        lua.lua_settop(state, 0);
    }
    pushLuaHostTable(state);
    lua.lua_setglobal(state, "velmora");
    if (lua.luaL_loadbufferx(state, prelude.data(), prelude.size(), "=prelude", "t") != LUA_OK) {
        return lua.lua_error(state);
    }
    lua.lua_pushcclosure(state, &isLess, 0);
    lua.lua_callk(state, 1, 0, 0, nullptr);
    return 0;
}

int LuaState::runSource(lua_State* state) {
    const LuaState& self = of(state);
    const LuaLibrary& lua = self.lua;
    const std::string& source = *self.source_;
    if (lua.luaL_loadbufferx(state, source.data(), source.size(), sourceName, "t") != LUA_OK) {
        return lua.lua_error(state);
    }
    lua.lua_callk(state, 0, 0, 0, nullptr);
    return 0;
}

/// The line of the script that runs there, 0 when there is none.
int LuaState::lineOf(lua_State* state) const {
    lua_Debug where;
    for (int level = 0; lua.lua_getstack(state, level, &where) != 0; ++level) {
        lua.lua_getinfo(state, "Sl", &where);
        if (where.currentline > 0 && std::strcmp(where.source, sourceName) == 0)
            return where.currentline;
    }
    return 0;
}

/// Called where an error is raised.
int LuaState::noteLine(lua_State* state) {
    LuaState& self = of(state);
    if (!self.reason_) self.line_ = self.lineOf(state);
    return 1;
}

/// The error object as text. It may have a function of the script for that.
int LuaState::describeError(lua_State* state) {
    LuaState& self = of(state);
    std::size_t size = 0;
    const char* message = self.lua.luaL_tolstring(state, 1, &size);
    [](LuaState& keeper, const char* begin, std::size_t length) noexcept {
        try {
            keeper.text.assign(begin, std::min(length, 2 * longest));
        } catch (...) {
            keeper.text.clear();
        }
    }(self, message, size);
    return 0;
}

int LuaState::callProtected(lua_CFunction function, int arguments) {
    lua.lua_pushcclosure(state_, function, 0);
    lua.lua_rotate(state_, 1, 1);
    return lua.lua_pcallk(state_, arguments, 0, 0, 0, nullptr);
}

LuaScript::Error LuaState::takeError() {
    text.clear();
    if (callProtected(&describeError, 1) != LUA_OK) {
        lua.lua_settop(state_, 0);
        text = "the error cannot be told";
    }
    LuaScript::Error error{text, line_};
    if (error.message.starts_with(messageStart)) {
        const char* begin = error.message.data() + messageStart.size();
        const char* end = error.message.data() + error.message.size();
        const auto [rest, problem] = std::from_chars(begin, end, error.line);
        if (problem == std::errc() && std::string_view(rest, end).starts_with(": ")) {
            error.message.erase(0, static_cast<std::size_t>(rest - error.message.data()) + 2);
        }
    }
    shorten(error.message);
    return error;
}

std::optional<LuaScript::Error> LuaState::run(const std::string& source) {
    started_ = processorTime();
    source_ = &source;
    state_ = lua.lua_newstate(&allocate, this);
    if (!state_) return LuaScript::Error{"not enough memory", 0};
    *static_cast<LuaState**>(lua_getextraspace(state_)) = this;
    if (callProtected(&setUp, 0) != LUA_OK) return takeError();
    setHook(state_, hookInterval);
    lua.lua_pushcclosure(state_, &noteLine, 0);
    lua.lua_pushcclosure(state_, &runSource, 0);
    const int status = lua.lua_pcallk(state_, 0, 0, 1, 0, nullptr);
    if (reason_) return LuaScript::Error{reason_, line_};
    if (status == LUA_OK) return std::nullopt;
    lua.lua_rotate(state_, 1, 1);
    lua.lua_settop(state_, 1);
    return takeError();
}

}  // namespace velmora
