#pragma once

#include <QSlider>
#include <functional>
#include <memory>

#include "platform/appkit/controls/NSSlider.h"

namespace velmora {

/// The widget that shows a slider of ours, in the host's own style.
class QtSlider final : public QSlider, public ControlPeer {
public:
    /// What the user moves counts while `takesInput()`.
    QtSlider(std::shared_ptr<NSSlider> slider, std::function<bool()> takesInput, QWidget* parent);
    ~QtSlider() override;
    QtSlider(const QtSlider&) = delete;
    QtSlider& operator=(const QtSlider&) = delete;

    /// The slider is no longer shown here; the widget may still be in the middle of an event.
    void letGo();

    void draw() override {}
    void needsDisplay() override;

private:
    void moved(bool done);

    std::shared_ptr<NSSlider> slider_;
    std::function<bool()> takesInput_;
};

}  // namespace velmora
