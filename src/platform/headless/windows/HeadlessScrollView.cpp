#include "platform/headless/windows/HeadlessScrollView.h"

#include <algorithm>

namespace velmora {

class HeadlessScrollView::ClipView final : public NSClipView {
public:
    ClipView(NSSize document, NSRect visible) : document_(document), visible_(visible) {
        visible_.origin = constrainScrollPoint(visible.origin);
    }

    NSRect visible() const { return visible_; }

    NSPoint constrainScrollPoint(NSPoint point) override {
        const float right = document_.width - visible_.size.width;
        const float bottom = document_.height - visible_.size.height;
        return {std::clamp(point.x, 0.0F, std::max(0.0F, right)),
                std::clamp(point.y, 0.0F, std::max(0.0F, bottom))};
    }
    void scrollToPoint(NSPoint point) override { visible_.origin = point; }

private:
    NSSize document_;
    NSRect visible_;
};

HeadlessScrollView::HeadlessScrollView(const ViewDescription& description,
                                       const std::weak_ptr<NSWindow>& window,
                                       const CommandHandler& handler)
    : HeadlessViewOf<NSScrollView>(description, window, handler),
      name_(description.scroll->name),
      line_(description.scroll->line),
      clipView_(
          std::make_shared<ClipView>(description.scroll->document,
                                     NSRect{description.scroll->origin, description.frame.size})) {}

std::shared_ptr<NSClipView> HeadlessScrollView::contentView() {
    return clipView_;
}

NSRect HeadlessScrollView::documentVisibleRect() {
    return clipView_->visible();
}

}  // namespace velmora
