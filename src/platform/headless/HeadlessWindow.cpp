#include "platform/headless/HeadlessWindow.h"

#include <stdexcept>

#include "platform/headless/HeadlessText.h"

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

std::shared_ptr<HeadlessView> makeView(const ViewDescription& description,
                                       const std::weak_ptr<NSWindow>& window,
                                       const CommandHandler& handler) {
    if (description.text) return std::make_shared<HeadlessTextView>(description, window, handler);
    return std::make_shared<HeadlessView>(description, window, handler);
}

/// The text view that is described as having the keys; "" when none is.
std::string focusedName(const std::vector<ViewDescription>& views) {
    for (const ViewDescription& view : views) {
        if (view.text && view.text->focused) return view.text->name;
        if (std::string name = focusedName(view.views); !name.empty()) return name;
    }
    return {};
}

std::shared_ptr<HeadlessView> makeContentView(
    const std::shared_ptr<NSWindow>& window, float height,
    const std::optional<ContextMenuDescription>& contextMenu,
    const std::vector<ViewDescription>& views, const CommandHandler& handler) {
    const ViewDescription content{
        {{0, 0}, {window->frame().size.width, height}}, contextMenu, views, {}};
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
        views_.push_back(makeView(view, window, handler));
    }
}

void HeadlessView::findTextViews(std::vector<HeadlessTextView*>& found) {
    if (auto* text = dynamic_cast<HeadlessTextView*>(this)) found.push_back(text);
    for (const auto& view : views_) view->findTextViews(found);
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
    const auto content =
        makeContentView(window, description.frame.size.height - description.titleBar,
                        description.contextMenu, description.views, handler);
    content->findTextViews(window->textViews_);
    window->contentView_ = content;
    window->focusTextView(focusedName(description.views));
    for (const DrawerDescription& drawer : description.drawers) {
        ++number;
        auto holder = std::make_shared<HeadlessWindow>("drawer", drawer.frame, number);
        const auto inside =
            makeContentView(holder, drawer.frame.size.height, std::nullopt, drawer.views, handler);
        inside->findTextViews(window->textViews_);
        holder->contentView_ = inside;
        window->drawers_.push_back(std::make_shared<HeadlessDrawer>(std::move(holder)));
    }
    return window;
}

HeadlessTextView* HeadlessWindow::textViewNamed(const std::string& name) const {
    for (HeadlessTextView* view : textViews_) {
        if (view->name() == name) return view;
    }
    return nullptr;
}

void HeadlessWindow::makeKeyWindow() {
    if (makeKey_) makeKey_(*this);
}

}  // namespace velmora
