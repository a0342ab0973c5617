#pragma once

#include <memory>

#include "platform/runtime/NSObject.h"

namespace velmora {

/// What events can be offered to: views and windows, each with the one that is asked next.
class NSResponder : public NSObject {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// Whether it wants to be the first to be asked.
    virtual bool acceptsFirstResponder() { return false; }

    /// Null at the end of the chain.
    virtual std::shared_ptr<NSResponder> nextResponder() { return nullptr; }

    /// Sends itself the message (`void(const Id&)`) if it responds to it; false if not.
    bool tryToPerform_with(Selector action, const Id& object);
};

using NSResponderRef = std::shared_ptr<NSResponder>;

}  // namespace velmora
