#include "platform/appkit/NSTextField.h"

#include "platform/foundation/NSNotificationCenter.h"
#include "platform/runtime/Class.h"

namespace velmora {

namespace {

constexpr std::string_view textDidChange = "NSControlTextDidChangeNotification";

}  // namespace

Class& NSTextView::classObject() {
    static auto* object = new Class("NSTextView", &NSObject::classObject());
    return *object;
}

Class& NSTextField::classObject() {
    static auto* object = new Class("NSTextField", &NSObject::classObject());
    return *object;
}

void NSTextField::setStringValue(const std::string& text) {
    stringValue_ = text;
    if (editor_) editor_->setString(text);
    if (showText_) showText_(text);
}

NSTextView& NSTextField::editor() {
    if (!editor_) {
        editor_ = std::make_shared<NSTextView>();
        editor_->setString(stringValue_);
    }
    return *editor_;
}

void NSTextField::userChangedText(const std::string& text) {
    if (text == stringValue_) return;
    editor().setString(text);
    stringValue_ = text;
    static const Selector selector = Selector::named("controlTextDidChange:");
    const Id delegate = delegate_.lock();
    if (delegate && delegate->respondsToSelector(selector)) {
        const NSNotification notification{textDidChange, this, std::nullopt};
        message<void(const NSNotification&)>(*delegate, selector, notification);
    }
}

bool NSTextField::userCommanded(Selector command) {
    static const Selector selector = Selector::named("control:textView:doCommandBySelector:");
    const Id delegate = delegate_.lock();
    if (!delegate || !delegate->respondsToSelector(selector)) return false;
    editor();
    return message<bool(NSTextField&, const Id&, Selector)>(*delegate, selector, *this, editor_,
                                                            command);
}

}  // namespace velmora
