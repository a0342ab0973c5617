#pragma once

#include "platform/headless/Scenario.h"
#include "platform/headless/ScenarioText.h"

namespace velmora {

struct ParsedExpectation {
    decltype(Statement::what) what;
    /// It is about the host that is current, not about files or the time.
    bool aboutHost = true;
};

/// Reads what follows "expect". Throws a ScenarioError.
ParsedExpectation parseExpectation(ScenarioText& text, ScenarioLine& line);

}  // namespace velmora
