#include "platform/appkit/controls/NSActionCell.h"

#include "platform/runtime/Class.h"

namespace velmora {

Class& NSActionCell::classObject() {
    static auto* object = new Class("NSActionCell", &NSCell::classObject());
    return *object;
}

}  // namespace velmora
