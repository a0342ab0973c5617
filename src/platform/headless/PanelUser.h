#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/headless/Scenario.h"

namespace velmora {

class NSPanel;
class NSTableView;

/// The hands and the eyes of a user before one of our panels.
class PanelUser {
public:
    explicit PanelUser(NSPanel& panel) : panel_(panel) {}

    /// Does it, while the modifier keys of these flags are held. Why it could not be done; "" when
    /// it was.
    std::string act(const PanelStep& step, std::uint32_t modifierFlags);

    /// What is to be seen of what the expectation looks at.
    std::vector<std::string> look(const PanelStateExpectation& expected) const;

private:
    std::string actInTable(const PanelStep& step, std::uint32_t modifierFlags);
    std::string actInCell(const PanelStep& step, NSTableView& table);
    std::string clickMatrix(const PanelStep& step);
    std::string typeInControl(const PanelStep& step);
    std::shared_ptr<NSTableView> table() const;

    NSPanel& panel_;
};

}  // namespace velmora
