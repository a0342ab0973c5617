#pragma once

#include <memory>
#include <string_view>

#include "platform/runtime/Selector.h"

namespace velmora {

class Class;

/// The root of the objects that receive messages by name.
class NSObject : public std::enable_shared_from_this<NSObject> {
public:
    NSObject() = default;
    virtual ~NSObject() = default;
    NSObject(const NSObject&) = delete;
    NSObject& operator=(const NSObject&) = delete;

    /// The class object of NSObject itself: what every class inherits.
    static Class& classObject();

    /// The object's class, whose method lists say to what it responds.
    virtual Class& isa() const { return classObject(); }

    bool respondsToSelector(Selector selector) const;
};

/// An object of which only the messages matter.
using Id = std::shared_ptr<NSObject>;

}  // namespace velmora
