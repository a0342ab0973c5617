#pragma once

#include <optional>
#include <string>

namespace velmora {

/// A script in Lua 5.4 that runs in this process, synchronously. Lua itself is loaded when the first
/// such script runs. What a script can do besides Lua's own safe libraries is the table `velmora`:
/// see docs/scripts.md.
class LuaScript {
public:
    explicit LuaScript(std::string source) : source_(std::move(source)) {}

    struct Error {
        std::string message;
        /// The line of the source, 0 when unknown.
        int line = 0;
    };

    /// Compiles and runs the source. Nothing on success. A script that runs more instructions than
    /// the limit ends with an error, and so does any fault of it: none reaches the caller.
    std::optional<Error> execute();

private:
    std::string source_;
};

}  // namespace velmora
