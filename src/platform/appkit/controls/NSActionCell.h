#pragma once

#include <memory>

#include "platform/appkit/controls/NSCell.h"
#include "platform/runtime/Selector.h"

namespace velmora {

/// A cell that the user can act on: it knows which message to send then, and to whom.
class NSActionCell : public NSCell {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// Null for the application. Not kept alive, so that a control can be its own target.
    Id target() const { return target_.lock(); }
    void setTarget(const Id& target) { target_ = target; }
    Selector action() const { return action_; }
    void setAction(Selector action) { action_ = action; }

private:
    std::weak_ptr<NSObject> target_;
    Selector action_;
};

}  // namespace velmora
