#pragma once

#include <memory>
#include <string>

#include "platform/appkit/controls/NSTextFieldCell.h"
#include "platform/appkit/controls/NSTextView.h"

namespace velmora {

/// A field of one line of text in a panel; one that is not editable is a text that is only shown.
/// Its delegate may answer `controlTextDidChange:` (`void(const NSNotification&)`, the field is the
/// object) and `control:textView:doCommandBySelector:` (`bool(NSTextField&, const Id&, Selector)`,
/// with the field editor; true when it has dealt with the command). Its action goes out when the
/// user has changed the text and is done with it.
class NSTextField final : public NSControl {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    NSTextField() : NSControl(std::make_shared<NSTextFieldCell>()) {}

    /// Shows the text; the delegate hears nothing of it.
    void setStringValue(const std::string& text) override;
    void setIntValue(int value) override { setStringValue(std::to_string(value)); }

    bool isEditable() const { return editable_; }
    void setEditable(bool editable);
    NSColor textColor() const { return textCell().textColor(); }
    void setTextColor(NSColor color) { textCell().setTextColor(color); }

    /// What edits the field's text; null before the user has begun to.
    const std::shared_ptr<NSTextView>& currentEditor() const { return editor_; }

    /// Not kept alive.
    void setDelegate(const Id& delegate) { delegate_ = delegate; }

    bool acceptsFirstResponder() override { return editable_; }

    // For desktops

    /// The user has changed the text.
    void userChangedText(const std::string& text);
    /// The user has given a command in the field, such as "cancel:" (Escape) or "insertNewline:"
    /// (Return). False when the field itself is to act on it.
    bool userCommanded(Selector command);
    /// The user has typed Return or has gone elsewhere: the action goes out if the text has changed
    /// since it did last.
    void userEndedEditing();

private:
    NSTextFieldCell& textCell() const { return static_cast<NSTextFieldCell&>(*cell()); }
    NSTextView& editor();

    std::shared_ptr<NSTextView> editor_;
    std::weak_ptr<NSObject> delegate_;
    bool editable_ = true;
    bool edited_ = false;
};

using NSTextFieldRef = std::shared_ptr<NSTextField>;

}  // namespace velmora
