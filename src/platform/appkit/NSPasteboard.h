#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/foundation/files/PropertyList.h"
#include "platform/runtime/NSObject.h"

namespace velmora {

/// What is carried while something is dragged: a property list for each declared type.
class NSPasteboard final : public NSObject {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// Empties it. The owner would supply values that are wanted later; none is ever asked.
    void declareTypes_owner(std::vector<std::string> types, const Id& owner);
    const std::vector<std::string>& types() const { return types_; }

    /// False for a type that is not declared.
    bool setPropertyList_forType(PropertyList value, const std::string& type);
    /// Null without a value of that type.
    const PropertyList* propertyListForType(const std::string& type) const;

private:
    std::vector<std::string> types_;
    std::vector<std::pair<std::string, PropertyList>> values_;
};

/// The platform's bits for what a drop may do.
enum NSDragOperation : unsigned {
    NSDragOperationNone = 0,
    NSDragOperationCopy = 1,
    NSDragOperationLink = 2,
    NSDragOperationGeneric = 4,
    NSDragOperationPrivate = 8,
};

/// A drag, for whoever may take it.
class NSDraggingInfo final : public NSObject {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    NSPasteboard& draggingPasteboard() { return pasteboard_; }

private:
    NSPasteboard pasteboard_;
};

}  // namespace velmora
