#include "platform/appkit/controls/NSImageView.h"

#include "platform/runtime/Class.h"

namespace velmora {

namespace {

[[maybe_unused]] const Class& registered = NSImageView::classObject();

}  // namespace

Class& NSImageView::classObject() {
    static auto* object =
        &(new Class("NSImageView", &NSControl::classObject()))->makes<NSImageView>();
    return *object;
}

}  // namespace velmora
