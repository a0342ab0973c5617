#include "platform/appkit/NSContentDrawer.h"

#include "platform/appkit/NSPanel.h"
#include "platform/runtime/Class.h"

namespace velmora {

Class& NSContentDrawer::classObject() {
    static auto* object = &(new Class("NSContentDrawer", &NSDrawer::classObject()))
                               ->method<&NSContentDrawer::open>("open:")
                               .method<&NSContentDrawer::close>("close:")
                               .method<&NSContentDrawer::toggle>("toggle:");
    return *object;
}

NSContentDrawer::NSContentDrawer(NSControlRef content) : content_(std::move(content)) {}

void NSContentDrawer::open(const Id& /*sender*/) {
    setOpen(true);
}

void NSContentDrawer::close(const Id& /*sender*/) {
    setOpen(false);
}

void NSContentDrawer::toggle(const Id& /*sender*/) {
    setOpen(!open_);
}

void NSContentDrawer::setOpen(bool open) {
    if (open == open_) return;
    open_ = open;
    if (panel_) panel_->drawerChanged();
}

}  // namespace velmora
