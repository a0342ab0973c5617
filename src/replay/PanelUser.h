#pragma once

#include <memory>
#include <string>
#include <vector>

#include "replay/Scenario.h"

namespace velmora {

class NSPanel;
class NSTableView;

/// The hands and the eyes of a user before one of our panels.
class PanelUser {
public:
    explicit PanelUser(NSPanel& panel) : panel_(panel) {}

    /// Does it, but for a press of a button over the table: only what such a press needs. Why it
    /// could not be done; "" when it was.
    std::string act(const PanelStep& step);

    /// What is to be seen of what the expectation looks at.
    std::vector<std::string> look(const PanelStateExpectation& expected) const;

private:
    std::string actInTable(const PanelStep& step);
    std::string actInCell(const PanelStep& step, NSTableView& table);
    std::string clickMatrix(const PanelStep& step);
    std::string typeInControl(const PanelStep& step);
    std::shared_ptr<NSTableView> table() const;

    NSPanel& panel_;
};

}  // namespace velmora
