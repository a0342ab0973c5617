#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace velmora {

class ScriptHost;

/// A script in Lua 5.4 that runs in this process, synchronously. Lua itself is loaded when the
/// first such script runs. docs/scripts.md tells what a script can do.
class LuaScript {
public:
    struct Limits {
        /// Each instruction counts as at least 50 ns of processor time, and each call into the host
        /// as 10,000 of them. A script that spends them inside a long function of the library ends
        /// as soon as that returns or calls another.
        std::uint64_t instructions = 100'000'000;
        /// Bytes. A recursion without an end needs 96 MiB until Lua tells it as that.
        std::size_t memory = 128U << 20U;
    };

    /// The usual limits, but VELMORA_LUA_LIMIT in the environment gives the instructions in
    /// millions.
    static Limits limitsOfProcess();

    struct Error {
        /// It may hold bytes that are no UTF-8.
        std::string message;
        /// The line of the source, 0 when unknown.
        int line = 0;
    };

    /// The host must outlive it.
    LuaScript(std::string source, ScriptHost& host, Limits limits = limitsOfProcess())
        : source_(std::move(source)), host_(host), limits_(limits) {}

    /// Compiles and runs the source. Nothing on success; no fault of the script reaches the caller.
    /// A script may run while another one waits for its host.
    std::optional<Error> execute();

private:
    std::string source_;
    ScriptHost& host_;
    Limits limits_;
};

}  // namespace velmora
