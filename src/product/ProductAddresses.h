#pragma once

#include <string>

namespace velmora {

// Where the product and its maker are found. The only place that knows.

/// The product's web site. The environment variable VELMORA_SITE names another one, for whoever
/// publishes the system elsewhere.
std::string productHomePage();
/// The description of the newest version on that site, a property list.
std::string updateDescription();
std::string makerHomePage();

}  // namespace velmora
