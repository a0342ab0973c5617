#include "platform/appkit/controls/NSTextView.h"

#include "platform/foundation/NSNotificationCenter.h"
#include "platform/runtime/Class.h"

namespace velmora {

namespace {

constexpr std::string_view textDidChange = "NSTextDidChangeNotification";

[[maybe_unused]] const Class& registered = NSTextView::classObject();

}  // namespace

Class& NSTextView::classObject() {
    static auto* object =
        &(new Class("NSTextView", &NSControl::classObject()))->makes<NSTextView>();
    return *object;
}

void NSTextView::setString(std::string text) {
    string_ = std::move(text);
    setNeedsDisplay();
}

void NSTextView::setEditable(bool editable) {
    editable_ = editable;
    setNeedsDisplay();
}

void NSTextView::userChangedText(const std::string& text) {
    if (!editable_ || text == string_) return;
    setString(text);
    static const Selector selector = Selector::named("textDidChange:");
    const Id delegate = delegate_.lock();
    if (delegate && delegate->respondsToSelector(selector)) {
        const NSNotification notification{textDidChange, this, std::nullopt};
        message<void(const NSNotification&)>(*delegate, selector, notification);
    }
}

}  // namespace velmora
