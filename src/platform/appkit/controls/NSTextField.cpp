#include "platform/appkit/controls/NSTextField.h"

#include "platform/foundation/NSNotificationCenter.h"
#include "platform/runtime/Class.h"

namespace velmora {

namespace {

constexpr std::string_view textDidChange = "NSControlTextDidChangeNotification";

[[maybe_unused]] const Class& registered = NSTextField::classObject();

}  // namespace

Class& NSTextField::classObject() {
    static auto* object =
        &(new Class("NSTextField", &NSControl::classObject()))->makes<NSTextField>();
    return *object;
}

void NSTextField::setStringValue(const std::string& text) {
    edited_ = false;
    cell()->setStringValue(text);
    if (editor_) editor_->setString(text);
}

void NSTextField::setEditable(bool editable) {
    editable_ = editable;
    setNeedsDisplay();
}

NSTextView& NSTextField::editor() {
    if (!editor_) {
        editor_ = std::make_shared<NSTextView>();
        editor_->setString(stringValue());
    }
    return *editor_;
}

void NSTextField::userChangedText(const std::string& text) {
    if (!editable_ || text == stringValue()) return;
    edited_ = true;
    editor().setString(text);
    cell()->setStringValue(text);
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

void NSTextField::userEndedEditing() {
    if (!std::exchange(edited_, false)) return;
    sendAction();
}

}  // namespace velmora
