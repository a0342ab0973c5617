#pragma once

#include <array>

namespace velmora {

/// A kind of definitions that a person keeps: each has files, a panel and a class of its own.
struct Component {
    /// As it stands in the names of its files.
    const char* name;
    /// As a scenario calls it.
    const char* word;
};

inline constexpr std::array<Component, 5> productComponents{{
    {"Gestures", "gestures"},
    {"Mnemonics", "mnemonics"},
    {"Shortcuts", "shortcuts"},
    {"TextSnippets", "snippets"},
    {"Scripts", "scripts"},
}};

}  // namespace velmora
