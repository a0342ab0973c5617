#include "platform/appkit/NSResponder.h"

#include "platform/runtime/Class.h"

namespace velmora {

Class& NSResponder::classObject() {
    static auto* object = new Class("NSResponder", &NSObject::classObject());
    return *object;
}

bool NSResponder::tryToPerform_with(Selector action, const Id& object) {
    if (!respondsToSelector(action)) return false;
    message<void(const Id&)>(*this, action, object);
    return true;
}

}  // namespace velmora
