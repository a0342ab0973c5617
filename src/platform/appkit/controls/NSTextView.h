#pragma once

#include <memory>
#include <string>

#include "platform/appkit/controls/NSControl.h"

namespace velmora {

/// A text of several lines, with "\n" between them, that the user edits in a panel; and, without
/// a place in one, the field editor of a text field. Its delegate may answer `textDidChange:`
/// (`void(const NSNotification&)`, the view is the object), which tells of what the user does.
class NSTextView final : public NSControl {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    const std::string& string() const { return string_; }
    /// Shows the text; the delegate hears nothing of it.
    void setString(std::string text);

    /// Nothing for the desktop's own.
    const std::optional<NSFont>& font() const { return cell()->font(); }
    void setFont(NSFont font) { cell()->setFont(font); }
    bool isEditable() const { return editable_; }
    void setEditable(bool editable);

    /// Not kept alive.
    Id delegate() const { return delegate_.lock(); }
    void setDelegate(const Id& delegate) { delegate_ = delegate; }

    bool acceptsFirstResponder() override { return true; }

    // For desktops

    /// The user has changed the text; nothing while it is not editable.
    void userChangedText(const std::string& text);

private:
    std::string string_;
    std::weak_ptr<NSObject> delegate_;
    bool editable_ = true;
};

using NSTextViewRef = std::shared_ptr<NSTextView>;

}  // namespace velmora
