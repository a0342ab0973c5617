#include "host/_QZ_EX.h"

#include <utility>

#include "platform/runtime/NSLog.h"

namespace velmora {

namespace {

const Category category(NSObject::classObject().isa(), {methodFor<&_XIM2_with>("_XIM2:with:")});

}  // namespace

Class* _XIM2_with(Class& receiver, Selector a, Selector b) {
    const Method* first = receiver.class_getInstanceMethod(a);
    const Method* second = receiver.class_getInstanceMethod(b);
    if (!first || !second || first->signature != second->signature) {
        NSLog(receiver.name() + " cannot exchange '" + a.name() + "' and '" + b.name() + "'");
        return &receiver;
    }
    std::vector<Method> methods{*first, *second};
    receiver.class_removeMethods(methods);
    std::swap(methods[0].implementation, methods[1].implementation);
    receiver.class_addMethods(methods);
    return &receiver;
}

}  // namespace velmora
