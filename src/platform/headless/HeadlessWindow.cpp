#include "platform/headless/HeadlessWindow.h"

#include <stdexcept>

namespace velmora {

namespace {

/// Holds the drawer's window, which nothing else does.
class HeadlessDrawer final : public NSDrawer {
public:
    explicit HeadlessDrawer(NSWindowRef window) : window_(std::move(window)) {}
    NSViewRef contentView() override { return window_->contentView(); }

private:
    NSWindowRef window_;
};

NSViewRef makeContentView(const std::shared_ptr<NSWindow>& window, float height,
                          const std::optional<ContextMenuDescription>& contextMenu,
                          const std::vector<ViewDescription>& views,
                          const CommandHandler& handler) {
    const ViewDescription content{
        {{0, 0}, {window->frame().size.width, height}}, contextMenu, views};
    return std::make_shared<HeadlessView>(content, window, handler);
}

}  // namespace

HeadlessView::HeadlessView(const ViewDescription& description,
                           const std::weak_ptr<NSWindow>& window, const CommandHandler& handler)
    : frame_(description.frame),
      contextMenu_(description.contextMenu),
      window_(window),
      handler_(handler) {
    for (const ViewDescription& view : description.views) {
        views_.push_back(std::make_shared<HeadlessView>(view, window, handler));
    }
}

NSViewRef HeadlessView::hitTest(NSPoint point) {
    if (!NSMouseInRect(point, frame_, false)) return nullptr;
    const NSPoint inside{point.x - frame_.origin.x, point.y - frame_.origin.y};
    for (auto view = views_.rbegin(); view != views_.rend(); ++view) {
        if (NSViewRef hit = (*view)->hitTest(inside)) return hit;
    }
    return std::static_pointer_cast<NSView>(shared_from_this());
}

NSMenuRef HeadlessView::menuForEvent(const NSEventRef& /*event*/) {
    if (!contextMenu_) return nullptr;
    if (contextMenu_->raises) throw std::runtime_error(*contextMenu_->raises);
    return HeadlessMenu::make({}, contextMenu_->items, handler_);
}

std::shared_ptr<HeadlessWindow> HeadlessWindow::make(const WindowDescription& description,
                                                     int number, const CommandHandler& handler,
                                                     std::function<void(HeadlessWindow&)> makeKey) {
    auto window = std::make_shared<HeadlessWindow>(description.title, description.frame, number);
    window->makeKey_ = std::move(makeKey);
    window->contentView_ =
        makeContentView(window, description.frame.size.height - description.titleBar,
                        description.contextMenu, description.views, handler);
    for (const DrawerDescription& drawer : description.drawers) {
        ++number;
        auto holder = std::make_shared<HeadlessWindow>("drawer", drawer.frame, number);
        holder->contentView_ =
            makeContentView(holder, drawer.frame.size.height, std::nullopt, drawer.views, handler);
        window->drawers_.push_back(std::make_shared<HeadlessDrawer>(std::move(holder)));
    }
    return window;
}

void HeadlessWindow::makeKeyWindow() {
    if (makeKey_) makeKey_(*this);
}

}  // namespace velmora
