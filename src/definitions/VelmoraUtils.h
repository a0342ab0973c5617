#pragma once

#include <string>
#include <string_view>

namespace velmora {

class NSMenuItem;

/// Menu item paths: the titles of the menus that hold an item, from the outermost submenu down, and
/// the item's own title, joined by "/". The outermost menu adds nothing. Paths are compared
/// exactly.
class VelmoraUtils {
public:
    static std::string menuItemPathFor(const NSMenuItem& item);

    /// As above, into a string that keeps its memory from call to call.
    static void setMenuItemPath(const NSMenuItem& item, std::string& path);

    /// False for most items whose path is another one, at the cost of comparing one title.
    static bool mayHavePath(const NSMenuItem& item, std::string_view path);

    /// Appends one title: exactly one "/" joins it to what stands before it, whatever slashes the
    /// two have there. The first title stands as it is. A title without text leaves the "/", so
    /// that a separator never has the path of its menu.
    static void appendPathComponent(std::string& path, std::string_view title);
};

}  // namespace velmora
