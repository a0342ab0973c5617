#pragma once

#include <QLabel>
#include <memory>

#include "platform/appkit/controls/NSTextField.h"
#include "platform/appkit/controls/NSTextFieldCell.h"

namespace velmora {

/// A text that is only shown, in the colour of its cell.
class QtLabel : public QLabel {
public:
    QtLabel(NSTextFieldCellRef cell, QWidget* parent);

    /// The cell has changed.
    void showCell();

protected:
    void changeEvent(QEvent* event) override;

private:
    void showColor();

    NSTextFieldCellRef cell_;
};

/// The widget that shows a text field of ours in which nobody can type.
class QtTextLabel final : public QtLabel, public ControlPeer {
public:
    QtTextLabel(std::shared_ptr<NSTextField> field, const std::function<bool()>& takesInput,
                QWidget* parent);
    ~QtTextLabel() override;
    QtTextLabel(const QtTextLabel&) = delete;
    QtTextLabel& operator=(const QtTextLabel&) = delete;

    void letGo();

    void draw() override {}
    void needsDisplay() override { showCell(); }

private:
    std::shared_ptr<NSTextField> field_;
};

}  // namespace velmora
