#include "panels/VelmoraMenuItem.h"

#include "platform/runtime/Class.h"

namespace velmora {

Class& VelmoraMenuItem::classObject() {
    static auto* object = new Class("VelmoraMenuItem", &NSMenuItem::classObject());
    return *object;
}

}  // namespace velmora
