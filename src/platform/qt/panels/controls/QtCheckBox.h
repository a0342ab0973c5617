#pragma once

#include <QCheckBox>
#include <functional>
#include <memory>

#include "platform/appkit/controls/NSButton.h"

namespace velmora {

/// The widget that shows a button of ours that switches, in the host's own style.
class QtCheckBox final : public QCheckBox, public ControlPeer {
public:
    /// The user's clicks count while `takesInput()`.
    QtCheckBox(std::shared_ptr<NSButton> button, std::function<bool()> takesInput, QWidget* parent);
    ~QtCheckBox() override;
    QtCheckBox(const QtCheckBox&) = delete;
    QtCheckBox& operator=(const QtCheckBox&) = delete;

    /// The button is no longer shown here; the widget may still be in the middle of an event.
    void letGo();

    void draw() override {}
    void needsDisplay() override;

private:
    std::shared_ptr<NSButton> button_;
};

}  // namespace velmora
