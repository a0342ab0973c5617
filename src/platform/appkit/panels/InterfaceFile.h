#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "platform/appkit/panels/InterfaceDescription.h"
#include "platform/appkit/panels/NSPanel.h"
#include "platform/foundation/files/PropertyList.h"
#include "platform/runtime/NSObject.h"

namespace velmora {

class NSMenu;
class NSMenuItem;
class NSTableColumn;

/// Makes the objects that an interface file describes. The file is a property list:
///
///     { objects = { NAME = { class = …; … }; … };
///       outlets = { OUTLET = NAME; … }; }
///
/// Titles and texts are keys of the text tables. Actions go to the owner, or to `target = NAME`.
/// `delegate` and `dataSource` have the one value "owner". A key that the class does not know is an
/// error. An outlet is set by the owner's method set<Outlet>: (`void(const Id&)`). At the end each
/// object that responds to it gets `awakeFromNib` (`void()`).
///
/// NSMenu has a title and items, each { title; action; keyEquivalent; modifiers; submenu = NAME; }
/// or { separator = YES; }; the modifiers are "command", "control", "option", "shift" with blanks
/// between them.
///
/// NSPanel has a title, rows, and maybe delegate and drawer = NAME. Rows are arrays of cells: the
/// NAME of a control, { label = "…"; }, or { matrix = NAME; row = N; } for one row of a matrix,
/// each cell of it in a place of its own.
///
/// Every control may have: tag, enabled, action, target. Beyond that there is
///   NSButton     title, type (push, switch), imageOnly (the title is only a name), imageSize,
///                keyEquivalent ("return", "escape"), hidden (transparent and not enabled)
///   NSTextField  text, editable, delegate
///   NSTextView   editable, delegate
///   NSSlider     minValue, maxValue, continuous
///   NSImageView  imageSize
///   NSMatrix     mode (checks, radio, texts), rows, columns, and for its cells, row after row:
///                tags; titles, used from the beginning again when there are fewer; imageOnly,
///                imageSize
///   NSTableView  columns = (NAME, …), dataSource, delegate, rowHeight, multipleSelection
///   NSControl    nothing: it shows the cell that it is given
/// and for what derives from one of these the same; its class must say how one is made.
///
/// NSTableColumn has identifier, title, width, minWidth, editable, resizable. NSDrawer has
/// content = NAME of a control, width and height.
class InterfaceFile {
public:
    using Error = InterfaceError;
    using Localize = std::function<std::string(const std::string&)>;

    InterfaceFile(NSDictionary contents, Localize localize);

    /// Makes all objects, then connects the outlets. On an error nothing is connected.
    bool load(const Id& owner, Error& error);

private:
    void makeObjects();
    /// Made before, or now.
    const Id& objectNamed(const std::string& name, const std::string& place);
    template <class Kind>
    std::shared_ptr<Kind> objectOfKind(const std::string& name, const std::string& place,
                                       const char* kind);
    Id makeObject(InterfaceDescription& description, const std::string& name);
    std::shared_ptr<NSMenu> makeMenu(InterfaceDescription& description);
    std::shared_ptr<NSMenuItem> makeItem(InterfaceDescription& description);
    NSControlRef makeControl(InterfaceDescription& description, const std::string& name);
    void describeKind(InterfaceDescription& description, NSControl& control);
    std::shared_ptr<NSTableColumn> makeColumn(InterfaceDescription& description);
    NSContentDrawerRef makeDrawer(InterfaceDescription& description);
    NSPanelRef makePanel(InterfaceDescription& description);
    NSPanel::Cell makeCell(const PropertyList& cell, const std::string& place);
    std::string title(InterfaceDescription& description, std::string_view key = "title");
    /// The null selector without an action; throws when its receiver does not have it.
    Selector actionOf(InterfaceDescription& description, Id& target);
    /// The owner where the description names it under the key, else null.
    Id ownerFor(InterfaceDescription& description, std::string_view key);
    void connectOutlets();
    void awake();

    NSDictionary contents_;
    Localize localize_;
    Id owner_;
    std::map<std::string, Id> objects_;
};

}  // namespace velmora
