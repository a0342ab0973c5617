#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/appkit/NSTextView.h"

namespace velmora {

/// A field of one line of text in a panel. Its delegate may answer `controlTextDidChange:`
/// (`void(const NSNotification&)`, the field is the object) and
/// `control:textView:doCommandBySelector:` (`bool(NSTextField&, const Id&, Selector)`, with the
/// field editor; true when it has dealt with the command).
class NSTextField final : public NSObject {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    const std::string& stringValue() const { return stringValue_; }
    /// Shows the text; the delegate hears nothing of it.
    void setStringValue(const std::string& text);

    /// What edits the field's text; null before the user has begun to.
    const std::shared_ptr<NSTextView>& currentEditor() const { return editor_; }

    /// Not kept alive.
    void setDelegate(const Id& delegate) { delegate_ = delegate; }

    // For desktops

    /// The user has changed the text.
    void userChangedText(const std::string& text);
    /// The user has given a command in the field, such as "cancel:" (Escape) or "insertNewline:"
    /// (Return). False when the field itself is to act on it.
    bool userCommanded(Selector command);
    /// How the text is shown; set by whatever shows the field, and taken back when it no longer
    /// does.
    void setShowText(std::function<void(const std::string&)> show) { showText_ = std::move(show); }

private:
    std::string stringValue_;
    NSTextView& editor();

    std::shared_ptr<NSTextView> editor_;
    std::weak_ptr<NSObject> delegate_;
    std::function<void(const std::string&)> showText_;
};

}  // namespace velmora
