#include "platform/headless/windows/HeadlessWindow.h"

#include "platform/headless/windows/HeadlessScrollView.h"
#include "platform/headless/windows/HeadlessText.h"

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
        {{0, 0}, {window->frame().size.width, height}}, contextMenu, {}, {}, {}};
    auto view = std::make_shared<HeadlessView>(content, window, handler);
    view->addViews(views);
    return view;
}

bool hasName(const NSView& view) {
    return dynamic_cast<const HeadlessTextView*>(&view) ||
           dynamic_cast<const HeadlessScrollView*>(&view);
}

/// The one of that kind and name, or null.
template <class View>
View* find(const std::vector<NSView*>& views, const std::string& name) {
    for (NSView* view : views) {
        auto* candidate = dynamic_cast<View*>(view);
        if (candidate && candidate->name() == name) return candidate;
    }
    return nullptr;
}

}  // namespace

std::shared_ptr<HeadlessWindow> HeadlessWindow::make(const WindowDescription& description,
                                                     int number, const CommandHandler& handler,
                                                     std::function<void(HeadlessWindow&)> makeKey) {
    auto window = std::make_shared<HeadlessWindow>(description.title, description.frame, number);
    window->makeKey_ = std::move(makeKey);
    const auto content =
        makeContentView(window, description.frame.size.height - description.titleBar,
                        description.contextMenu, description.views, handler);
    const auto note = [&named = window->named_](NSView& view) {
        if (hasName(view)) named.push_back(&view);
    };
    content->visit(note);
    window->contentView_ = content;
    window->focusTextView(focusedName(description.views));
    for (const DrawerDescription& drawer : description.drawers) {
        ++number;
        auto holder = std::make_shared<HeadlessWindow>("drawer", drawer.frame, number);
        const auto inside =
            makeContentView(holder, drawer.frame.size.height, std::nullopt, drawer.views, handler);
        inside->visit(note);
        holder->contentView_ = inside;
        window->drawers_.push_back(std::make_shared<HeadlessDrawer>(std::move(holder)));
    }
    return window;
}

HeadlessTextView* HeadlessWindow::textViewNamed(const std::string& name) const {
    return find<HeadlessTextView>(named_, name);
}

HeadlessScrollView* HeadlessWindow::scrollViewNamed(const std::string& name) const {
    return find<HeadlessScrollView>(named_, name);
}

HeadlessTextView* HeadlessWindow::focusedTextView() const {
    return dynamic_cast<HeadlessTextView*>(firstResponder_.lock().get());
}

void HeadlessWindow::focusTextView(const std::string& name) {
    if (HeadlessTextView* view = textViewNamed(name)) firstResponder_ = view->weak_from_this();
}

NSResponderRef HeadlessWindow::firstResponder() {
    return std::static_pointer_cast<NSResponder>(firstResponder_.lock());
}

bool HeadlessWindow::makeFirstResponder(const NSResponderRef& responder) {
    firstResponder_ = responder;
    return true;
}

void HeadlessWindow::makeKeyWindow() {
    if (makeKey_) makeKey_(*this);
}

}  // namespace velmora
