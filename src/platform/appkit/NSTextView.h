#pragma once

#include <string>

#include "platform/runtime/NSObject.h"

namespace velmora {

/// A text while it is edited: the field editor of a text field.
class NSTextView final : public NSObject {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    const std::string& string() const { return string_; }
    void setString(std::string text) { string_ = std::move(text); }

private:
    std::string string_;
};

}  // namespace velmora
