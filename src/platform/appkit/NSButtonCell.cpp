#include "platform/appkit/NSButtonCell.h"

#include "platform/runtime/Class.h"

namespace velmora {

Class& NSButtonCell::classObject() {
    static auto* object = new Class("NSButtonCell", &NSActionCell::classObject());
    return *object;
}

}  // namespace velmora
