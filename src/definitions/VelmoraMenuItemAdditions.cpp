#include "definitions/VelmoraMenuItemAdditions.h"

#include "definitions/VelmoraUtils.h"
#include "platform/appkit/NSMenuItem.h"
#include "platform/runtime/Class.h"

namespace velmora {

namespace {

const Category category(NSMenuItem::classObject(),
                        {methodFor<&velmoraMenuItemPath>("velmoraMenuItemPath")});

}  // namespace

std::string velmoraMenuItemPath(NSMenuItem& item) {
    return VelmoraUtils::menuItemPathFor(item);
}

}  // namespace velmora
