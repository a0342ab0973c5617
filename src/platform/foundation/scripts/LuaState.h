#pragma once

#include <ctime>

#include "platform/foundation/scripts/LuaLibrary.h"
#include "platform/foundation/scripts/LuaScript.h"
#include "platform/foundation/scripts/ScriptHost.h"

namespace velmora {

/// One running script: its memory, its budget, and the way from Lua's callbacks back to us.
///
/// Lua's hook is called every few instructions and before every call of a function, also of one
/// that a function of the library calls; it adds up and, once a millisecond, looks at the processor
/// time.
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

    /// Counts a call from the script that hands over so much text; raises an error when that was
    /// too much.
    void beginCall(lua_State* state, std::size_t textSize);
    /// Counts an act of the host's that the call asks for, likewise.
    void beginAct(lua_State* state);
    /// Nothing came of the last one.
    void takeActBack() { --acts_; }

    /// Calls the host. False when that failed.
    template <class Call>
    bool callHost(Call call) noexcept {
        try {
            call(host);
            return true;
        } catch (...) {
            return false;
        }
    }

    /// Nanoseconds of this thread.
    static std::uint64_t processorTime() noexcept;
    /// What has passed since then was not the script's.
    void forgetTimeSince(std::uint64_t then) noexcept { started_ += processorTime() - then; }

    const LuaLibrary& lua;
    ScriptHost& host;

    // What callHost has got for a function that is now about to hand it to Lua.
    std::string text;
    std::vector<ScriptHost::MenuItem> items;

private:
    static void* allocate(void* self, void* block, std::size_t oldSize, std::size_t size);
    static void hook(lua_State* state, lua_Debug* where);
    static int isLess(lua_State* state);
    static int setUp(lua_State* state);
    static int runSource(lua_State* state);
    static int describeError(lua_State* state);
    static int noteLine(lua_State* state);

    /// Ends the script: whoever catches this error gets it again with the next instruction.
    void end(lua_State* state, const char* reason);
    int lineOf(lua_State* state) const;
    void setHook(lua_State* state, int interval);
    bool isExhausted() noexcept;
    int callProtected(lua_CFunction function, int arguments);
    LuaScript::Error takeError();

    LuaScript::Limits limits_;
    lua_State* state_ = nullptr;
    const std::string* source_ = nullptr;
    std::size_t memory_ = 0;
    std::uint64_t instructions_ = 0;
    std::uint64_t started_ = 0;
    /// When the processor time was looked at, on a clock that costs less.
    std::uint64_t looked_ = 0;
    std::size_t handedText_ = 0;
    int acts_ = 0;
    /// Why the script has to end, null while it may go on.
    const char* reason_ = nullptr;
    int line_ = 0;
};

}  // namespace velmora
