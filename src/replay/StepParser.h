#pragma once

#include <vector>

#include "replay/Scenario.h"
#include "replay/ScenarioText.h"

namespace velmora {

// Each reads the line if it is a statement of its kind, and the block or text that belongs to it,
// and appends what the line stands for; false leaves the line as it is. They throw a ScenarioError.

/// Changes of files from outside: file, gestures, preferences, remove file, writing …
bool parseFileStep(ScenarioText& text, ScenarioLine& line, std::vector<Statement>& statements);

/// What the user does: press, move, stroke, draw, key, wait, choose …
bool parseUserStep(ScenarioLine& line, std::vector<Statement>& statements);

/// What the host's own code does: rename item, replace menu, open window …
bool parseHostStep(ScenarioText& text, ScenarioLine& line, std::vector<Statement>& statements);

/// How much time a statement takes by itself.
Time durationOf(const Statement& statement);

}  // namespace velmora
