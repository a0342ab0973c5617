#pragma once

#include <QPushButton>
#include <functional>
#include <memory>

#include "platform/appkit/controls/NSButton.h"

namespace velmora {

/// The widget that shows a push button of ours, in the host's own style. One that is transparent
/// keeps its place.
class QtButton final : public QPushButton, public ControlPeer {
public:
    /// The user's clicks count while `takesInput()`.
    QtButton(std::shared_ptr<NSButton> button, std::function<bool()> takesInput, QWidget* parent);
    ~QtButton() override;
    QtButton(const QtButton&) = delete;
    QtButton& operator=(const QtButton&) = delete;

    /// Null once it has been let go.
    const std::shared_ptr<NSButton>& button() const { return button_; }
    /// The button is no longer shown here; the widget may still be in the middle of an event.
    void letGo();

    void draw() override;
    void needsDisplay() override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::shared_ptr<NSButton> button_;
    /// While the button is drawn.
    QPaintEvent* painting_ = nullptr;
};

}  // namespace velmora
