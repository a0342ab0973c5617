#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "platform/foundation/PropertyList.h"
#include "platform/runtime/NSObject.h"

namespace velmora {

class NSButton;
class NSMenu;
class NSMenuItem;
class NSPanel;

/// Makes the objects that an interface file describes. The file is a property list:
///
///     { objects = { NAME = { class = …; … }; … };
///       outlets = { OUTLET = NAME; … }; }
///
/// NSMenu has a title and items, each { title; action; keyEquivalent; modifiers; submenu = NAME; }
/// or { separator = YES; }; the modifiers are "command", "control", "option", "shift" with blanks
/// between them. NSPanel has a title and rows, each an array of cells: the NAME of a field or
/// a button, or { label = "…"; }. NSTextField has nothing to say. NSButton, and any class that
/// derives from it, may have a title, an action, and imageOnly = YES where the title is only a
/// name. Titles are keys of the text tables. Actions go to the owner. An outlet is set by the
/// owner's method set<Outlet>: (`void(const Id&)`). At the end each object that responds to it gets
/// `awakeFromNib` (`void()`).
class InterfaceFile {
public:
    /// `place` names what is wrong by its keys, as in objects.vmMenu.items[2].action.
    struct Error {
        std::string place;
        std::string reason;
    };
    using Localize = std::function<std::string(const std::string&)>;

    InterfaceFile(NSDictionary contents, Localize localize);

    /// Makes all objects, then connects the outlets. On an error nothing is connected.
    bool load(const Id& owner, Error& error);

private:
    bool makeObject(const std::string& name, Error& error);
    std::shared_ptr<NSMenu> makeMenu(const NSDictionary& description, const std::string& place,
                                     Error& error);
    std::shared_ptr<NSMenuItem> makeItem(const NSDictionary& description, const std::string& place,
                                         Error& error);
    std::shared_ptr<NSButton> makeButton(const NSDictionary& description, const std::string& place,
                                         Error& error);
    /// The action that the description names, if any; nothing when the owner does not have it.
    std::optional<Selector> actionFor(const NSDictionary& description, const std::string& place,
                                      Error& error);
    std::shared_ptr<NSPanel> makePanel(const NSDictionary& description, const std::string& place,
                                       Error& error);
    bool connectOutlets(Error& error);
    void awake();

    NSDictionary contents_;
    Localize localize_;
    Id owner_;
    std::map<std::string, Id> objects_;
};

}  // namespace velmora
