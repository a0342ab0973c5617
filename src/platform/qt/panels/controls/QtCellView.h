#pragma once

#include <QWidget>
#include <functional>
#include <memory>

#include "platform/appkit/controls/NSControl.h"

namespace velmora {

/// The widget of a control that only shows its cell: the cell's picture, and what the cell draws.
class QtCellView final : public QWidget, public ControlPeer {
public:
    QtCellView(std::shared_ptr<NSControl> control, const std::function<bool()>& takesInput,
               QWidget* parent);
    ~QtCellView() override;
    QtCellView(const QtCellView&) = delete;
    QtCellView& operator=(const QtCellView&) = delete;

    void letGo();

    void draw() override;
    void needsDisplay() override;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::shared_ptr<NSControl> control_;
    QSize shownSize_;
    /// While the control is drawn.
    bool painting_ = false;
};

}  // namespace velmora
