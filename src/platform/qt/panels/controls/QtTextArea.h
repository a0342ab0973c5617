#pragma once

#include <QPlainTextEdit>
#include <functional>
#include <memory>

#include "platform/appkit/controls/NSTextView.h"

namespace velmora {

/// The widget that shows a text of several lines. Tab and Return belong to the text while it can be
/// edited; Control-Tab goes on to the next control, Shift-Tab, Control-Shift-Tab and Escape back to
/// the one before.
class QtTextArea final : public QPlainTextEdit, public ControlPeer {
public:
    /// What the user types counts while `takesInput()`.
    QtTextArea(std::shared_ptr<NSTextView> area, std::function<bool()> takesInput, QWidget* parent);
    ~QtTextArea() override;
    QtTextArea(const QtTextArea&) = delete;
    QtTextArea& operator=(const QtTextArea&) = delete;

    /// The area is no longer shown here; the widget may still be in the middle of an event.
    void letGo();

    void draw() override {}
    void needsDisplay() override;

    QSize minimumSizeHint() const override;
    QSize sizeHint() const override;

protected:
    bool event(QEvent* event) override;

private:
    QSize roomFor(int letters, int lines) const;
    void showFont();
    void changed();
    /// To the next control or the one before; false without one.
    bool leave(bool forward);

    std::shared_ptr<NSTextView> area_;
    std::function<bool()> takesInput_;
    /// What the area was last known to hold.
    std::string shown_;
};

}  // namespace velmora
