#pragma once

#include "support/ForwardingDesktop.h"

namespace velmora {

/// Counts how often the menu bar is asked for, which each look-up of a menu item does once.
class CountingDesktop final : public ForwardingDesktop {
public:
    using ForwardingDesktop::ForwardingDesktop;

    int lookUps() const { return lookUps_; }

    std::shared_ptr<NSMenu> mainMenu() override {
        ++lookUps_;
        return ForwardingDesktop::mainMenu();
    }

private:
    int lookUps_ = 0;
};

}  // namespace velmora
