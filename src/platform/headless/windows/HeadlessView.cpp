#include "platform/headless/windows/HeadlessView.h"

#include <stdexcept>

#include "platform/headless/windows/HeadlessScrollView.h"
#include "platform/headless/windows/HeadlessText.h"

namespace velmora {

namespace {

template <class View>
std::shared_ptr<NSView> made(const ViewDescription& description,
                             const std::weak_ptr<NSWindow>& window, const CommandHandler& handler) {
    return std::make_shared<View>(description, window, handler);
}

}  // namespace

void HeadlessViewNode::addViews(const std::vector<ViewDescription>& views) {
    for (const ViewDescription& description : views) {
        const auto make = description.text     ? &made<HeadlessTextView>
                          : description.scroll ? &made<HeadlessScrollView>
                                               : &made<HeadlessView>;
        views_.push_back(make(description, window_, handler_));
        auto& node = dynamic_cast<HeadlessViewNode&>(*views_.back());
        node.above_ = this;
        node.addViews(description.views);
    }
}

void HeadlessViewNode::visit(const std::function<void(NSView&)>& visitor) {
    visitor(view());
    for (const auto& inner : views_) dynamic_cast<HeadlessViewNode&>(*inner).visit(visitor);
}

NSViewRef HeadlessViewNode::hit(NSPoint point) {
    if (!NSMouseInRect(point, frame_, false)) return nullptr;
    const NSPoint inside{point.x - frame_.origin.x, point.y - frame_.origin.y};
    for (auto inner = views_.rbegin(); inner != views_.rend(); ++inner) {
        if (NSViewRef found = (*inner)->hitTest(inside)) return found;
    }
    return std::static_pointer_cast<NSView>(view().shared_from_this());
}

NSMenuRef HeadlessViewNode::makeContextMenu() const {
    if (!contextMenu_) return nullptr;
    if (contextMenu_->raises) throw std::runtime_error(*contextMenu_->raises);
    return HeadlessMenu::make({}, contextMenu_->items, handler_);
}

NSViewRef HeadlessViewNode::above() const {
    if (!above_) return nullptr;
    return std::static_pointer_cast<NSView>(above_->view().shared_from_this());
}

}  // namespace velmora
