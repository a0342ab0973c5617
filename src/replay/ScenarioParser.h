#pragma once

#include <string_view>
#include <variant>

#include "replay/Scenario.h"

namespace velmora {

/// Reads a scenario, whose language docs/scenarios.md describes, or says where and why it is
/// malformed. Any bytes do; what can be played afterwards is bounded: 256 KiB of text, ten minutes
/// of the scenario's time.
std::variant<Scenario, ScenarioError> parseScenario(std::string_view source);

}  // namespace velmora
