#include "platform/foundation/scripts/LuaScript.h"

#include <charconv>

#include "platform/foundation/scripts/LuaState.h"
#include "platform/port/Desktop.h"

namespace velmora {

LuaScript::Limits LuaScript::limitsOfProcess() {
    constexpr std::uint64_t million = 1'000'000;
    constexpr std::uint64_t most = 1'000'000'000;
    Limits limits;
    const std::optional<std::string> wanted = desktop().environment("VELMORA_LUA_LIMIT");
    std::uint64_t millions = 0;
    if (!wanted) return limits;
    const char* end = wanted->data() + wanted->size();
    const auto [rest, problem] = std::from_chars(wanted->data(), end, millions);
    if (problem == std::errc() && rest == end && millions > 0 && millions <= most) {
        limits.instructions = millions * million;
    }
    return limits;
}

std::optional<LuaScript::Error> LuaScript::execute() {
    Error problem;
    const LuaLibrary* lua = LuaLibrary::load(problem.message);
    if (!lua) return problem;
    return LuaState(*lua, host_, limits_).run(source_);
}

}  // namespace velmora
