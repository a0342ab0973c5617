#pragma once

#include <vector>

#include "platform/headless/windows/HostDescription.h"
#include "replay/ScenarioText.h"

namespace velmora {

// The parts of a scenario that describe a host. Each reads the rest of the line and the block that
// it opens, and throws a ScenarioError.

/// NAME [language "de" …] { menu bar { … } window … }
HostDescription parseHost(ScenarioText& text, ScenarioLine& line);

/// The items of the block that the line opens.
std::vector<ItemDescription> parseItems(ScenarioText& text, const ScenarioLine& line);

/// "TITLE" at X Y size W H [title bar N] [key] { … }
WindowDescription parseWindow(ScenarioText& text, ScenarioLine& line);

}  // namespace velmora
