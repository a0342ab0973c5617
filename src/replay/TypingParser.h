#pragma once

#include <vector>

#include "replay/Scenario.h"
#include "replay/ScenarioText.h"

namespace velmora {

/// Reads the line if it says what the user types, and where, or does with a panel: type, focus
/// text, click button, close panel. False leaves the line as it is. Throws a ScenarioError.
bool parseTypingStep(ScenarioLine& line, std::vector<Statement>& statements);

}  // namespace velmora
