#pragma once

#include "platform/appkit/NSMenuItem.h"

namespace velmora {

/// An item of a copied menu bar. The gestures panel knows by the class that choosing it is no
/// command of the host's.
class VelmoraMenuItem final : public NSMenuItem {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    using NSMenuItem::NSMenuItem;
};

}  // namespace velmora
