#pragma once

#include "replay/Scenario.h"
#include "replay/ScenarioText.h"

namespace velmora {

struct ParsedExpectation {
    decltype(Statement::what) what;
    /// It is about the host that is current, not about files or the time.
    bool aboutHost = true;
};

/// Reads what follows "expect". Throws a ScenarioError.
ParsedExpectation parseExpectation(ScenarioText& text, ScenarioLine& line);

}  // namespace velmora
