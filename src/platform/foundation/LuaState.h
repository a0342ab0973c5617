#pragma once

#include <ctime>

#include "platform/foundation/LuaLibrary.h"
#include "platform/foundation/LuaScript.h"
#include "platform/foundation/ScriptHost.h"

namespace velmora {

/// One running script: its memory, its budget, and the way from Lua's callbacks back to us.
///
/// Lua leaves its functions by longjmp. So no function that Lua calls has an object with a
/// destructor when it calls Lua, and none lets an exception out: what needs either stands in a
/// function that is noexcept, and leaves its results here.
class LuaState {
public:
    LuaState(const LuaLibrary& library, ScriptHost& itsHost, const LuaScript::Limits& limits)
        : lua(library), host(itsHost), limits_(limits) {}
    ~LuaState();
    LuaState(const LuaState&) = delete;
    LuaState& operator=(const LuaState&) = delete;

    std::optional<LuaScript::Error> run(const std::string& source);

    /// The one that a callback belongs to.
    static LuaState& of(lua_State* state);

    /// Calls the host. False when that failed. The time that it takes is not the script's.
    template <class Call>
    bool callHost(Call call) noexcept {
        const std::uint64_t before = processorTime();
        bool done = true;
        try {
            call(host);
        } catch (...) {
            done = false;
        }
        started_ += processorTime() - before;
        return done;
    }

    const LuaLibrary& lua;
    ScriptHost& host;

    // What callHost has got for a function that is now about to hand it to Lua.
    std::string text;
    std::vector<ScriptHost::MenuItem> items;

private:
    static void* allocate(void* self, void* block, std::size_t oldSize, std::size_t size);
    static void countHook(lua_State* state, lua_Debug* where);
    static int setUp(lua_State* state);
    static int runSource(lua_State* state);
    static int describeError(lua_State* state);
    static int noteLine(lua_State* state);

    /// Nanoseconds of this thread.
    static std::uint64_t processorTime() noexcept;
    bool isExhausted() noexcept;
    int callProtected(lua_CFunction function, int arguments);
    LuaScript::Error takeError();

    LuaScript::Limits limits_;
    lua_State* state_ = nullptr;
    const std::string* source_ = nullptr;
    std::size_t memory_ = 0;
    std::uint64_t instructions_ = 0;
    std::uint64_t started_ = 0;
    int line_ = 0;
};

}  // namespace velmora
