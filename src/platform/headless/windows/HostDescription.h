#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/port/NSGeometry.h"

namespace velmora {

/// An item of a described menu.
struct ItemDescription {
    enum class Kind { command, separator, submenu };
    /// When a submenu holds its items: always; once its delegate was asked; or made anew by the
    /// delegate each time.
    enum class Filling { present, lazy, refilled };

    Kind kind = Kind::command;
    std::string title;
    std::string action;
    std::string keyEquivalent;
    std::uint32_t keyModifiers = 0;
    bool enabled = true;
    /// What it becomes when its menu is validated, as opening it does.
    std::optional<bool> enabledWhenOpened;
    Filling filling = Filling::present;
    std::vector<ItemDescription> items;
};

struct ContextMenuDescription {
    std::vector<ItemDescription> items;
    /// The view raises an exception with this text instead of making the menu.
    std::optional<std::string> raises;
};

/// What makes a view one that takes typing.
struct TextDescription {
    /// By which a scenario speaks of it.
    std::string name;
    std::string contents;
    /// Whether it has the keys at first when its window is key.
    bool focused = false;
};

/// What makes a view one that shows a part of a document, whose y grows downward.
struct ScrollDescription {
    /// By which a scenario speaks of it.
    std::string name;
    NSSize document;
    /// What is visible first, and how far a line is across and down.
    NSPoint origin;
    NSSize line{10, 10};
};

/// A view by its frame in its parent's coordinates; of two that overlap the later is in front.
struct ViewDescription {
    NSRect frame;
    std::optional<ContextMenuDescription> contextMenu;
    std::vector<ViewDescription> views;
    std::optional<TextDescription> text;
    std::optional<ScrollDescription> scroll;
    /// Whether a text or scroll view can be given the keys, as others never can.
    bool takesKeys = true;
};

/// A drawer by the frame of its window, in screen coordinates.
struct DrawerDescription {
    NSRect frame;
    std::vector<ViewDescription> views;
};

struct WindowDescription {
    std::string title;
    /// With its decorations, in screen coordinates.
    NSRect frame;
    /// The height of the part at the top that no view covers.
    float titleBar = 0;
    bool key = false;
    std::optional<ContextMenuDescription> contextMenu;
    std::vector<ViewDescription> views;
    std::vector<DrawerDescription> drawers;
};

/// A host application as data.
struct HostDescription {
    std::string processName;
    /// Nothing for a host without a menu bar.
    std::optional<std::vector<ItemDescription>> menuBar;
    /// From front to back.
    std::vector<WindowDescription> windows;
    std::vector<std::string> languages = {"en"};
};

}  // namespace velmora
