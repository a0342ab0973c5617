#pragma once

#include <string>

#include "platform/headless/windows/HeadlessView.h"

namespace velmora {

class NSEvent;

/// Does to a text what a key does that is pressed with the cursor at its end: characters are
/// added, whatever their number, and delete takes the last one away. False when the key is not for
/// typing.
bool typeIntoText(std::string& text, const NSEvent& keyDown);

/// A view of a host's window that takes typing.
class HeadlessTextView final : public HeadlessView {
public:
    HeadlessTextView(const ViewDescription& description, const std::weak_ptr<NSWindow>& window,
                     const CommandHandler& handler)
        : HeadlessView(description, window, handler),
          name_(description.text->name),
          text_(description.text->contents) {}

    bool acceptsFirstResponder() override { return takesKeys(); }
    const std::string& name() const { return name_; }
    const std::string& text() const { return text_; }
    void keyDown(const NSEvent& event) { typeIntoText(text_, event); }

private:
    std::string name_;
    std::string text_;
};

}  // namespace velmora
