#include "platform/appkit/NSCell.h"

#include "platform/runtime/Class.h"

namespace velmora {

Class& NSCell::classObject() {
    static auto* object = new Class("NSCell", &NSObject::classObject());
    return *object;
}

}  // namespace velmora
