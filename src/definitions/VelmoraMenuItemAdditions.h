#pragma once

#include <string>

namespace velmora {

class NSMenuItem;

/// The item's path, as VelmoraUtils makes it. The message `velmoraMenuItemPath` of every menu item.
std::string velmoraMenuItemPath(NSMenuItem& item);

}  // namespace velmora
