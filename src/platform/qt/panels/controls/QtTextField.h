#pragma once

#include <QLineEdit>
#include <functional>
#include <memory>

#include "platform/appkit/controls/NSTextField.h"

namespace velmora {

/// The widget that shows a text field of ours. Keys that are commands are offered to the field's
/// delegate before the widget acts on them.
class QtTextField final : public QLineEdit, public ControlPeer {
public:
    /// What the user types counts while `takesInput()`.
    QtTextField(std::shared_ptr<NSTextField> field, std::function<bool()> takesInput,
                QWidget* parent);
    ~QtTextField() override;
    QtTextField(const QtTextField&) = delete;
    QtTextField& operator=(const QtTextField&) = delete;

    /// The field is no longer shown here; the widget may still be in the middle of an event.
    void letGo();
    /// The user is done with it, by whatever he did.
    void endEditing();

    void draw() override {}
    void needsDisplay() override;

protected:
    bool event(QEvent* event) override;

private:
    /// True when the key is not for the widget.
    bool takeCommand(int key);

    std::shared_ptr<NSTextField> field_;
    std::function<bool()> takesInput_;
};

}  // namespace velmora
