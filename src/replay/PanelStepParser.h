#pragma once

#include <optional>
#include <vector>

#include "replay/Scenario.h"
#include "replay/ScenarioText.h"

namespace velmora {

/// Reads a statement about what the user does in a panel; false when the line is none.
bool parsePanelStep(ScenarioLine& line, std::vector<Statement>& statements);

/// The rest of a statement that began with a text, "in row N column ID" or "in NAME", and that is
/// about a panel then; nothing when the line ends here.
std::optional<PanelStep> parsePlaceInPanel(ScenarioLine& line, PanelStep::Act inCell,
                                           std::optional<PanelStep::Act> inControl);

/// Reads an expectation about the panel that takes the keys; nothing when the line is none.
std::optional<PanelStateExpectation> parsePanelExpectation(ScenarioLine& line);

}  // namespace velmora
