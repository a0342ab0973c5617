#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string_view>

#include "replay/ScenarioParser.h"
#include "replay/ScenarioPlayer.h"

/// Any bytes as a scenario: they are malformed at one of their lines for some reason, or can be
/// played, in bounded time and always in the same way.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace velmora;
    const std::string_view source(reinterpret_cast<const char*>(data), size);
    const auto parsed = parseScenario(source);
    if (const auto* error = std::get_if<ScenarioError>(&parsed)) {
        const auto lines = std::count(source.begin(), source.end(), '\n') + 1;
        if (error->line < 1 || error->line > lines || error->reason.empty()) std::abort();
        return 0;
    }
    std::string first;
    for (int round = 0; round < 2; ++round) {
        ScenarioPlayer player("");
        player.play(std::get<Scenario>(parsed));
        Time last{};
        for (const Transcript::Entry& entry : player.transcript().entries()) {
            if (entry.at < last || entry.at > std::chrono::minutes(11)) std::abort();
            last = entry.at;
        }
        std::ostringstream transcript;
        player.transcript().print(transcript);
        if (round > 0 && transcript.str() != first) std::abort();
        first = transcript.str();
    }
    return 0;
}
