#include "platform/qt/panels/controls/QtSlider.h"

#include <QPointer>
#include <QSignalBlocker>

#include "platform/qt/base/QtGuard.h"

namespace velmora {

namespace {

/// The widget counts in steps: what an arrow key moves it by, a page, and all of its way.
constexpr int step = 10;
constexpr int page = 100;
constexpr int lastPosition = 1000;
constexpr int smallestWidth = 160;

}  // namespace

QtSlider::QtSlider(std::shared_ptr<NSSlider> slider, std::function<bool()> takesInput,
                   QWidget* parent)
    : QSlider(Qt::Horizontal, parent),
      slider_(std::move(slider)),
      takesInput_(std::move(takesInput)) {
    setRange(0, lastPosition);
    setSingleStep(step);
    setPageStep(page);
    setMinimumWidth(smallestWidth);
    slider_->setPeer(this);
    needsDisplay();
    connect(this, &QSlider::valueChanged, this, [this] { moved(!isSliderDown()); });
    connect(this, &QSlider::sliderReleased, this, [this] { moved(true); });
}

QtSlider::~QtSlider() {
    letGo();
}

void QtSlider::letGo() {
    if (slider_ && slider_->peer() == this) slider_->setPeer(nullptr);
    slider_ = nullptr;
}

void QtSlider::moved(bool done) {
    const auto kept = slider_;
    const QPointer<QtSlider> self(this);
    if (kept && takesInput_()) {
        const double least = kept->minValue();
        const double reached = least + (kept->maxValue() - least) * value() / lastPosition;
        guarded("Moving a slider", [&] { kept->userMovedTo(reached, done); });
    }
    if (self) self->needsDisplay();
}

void QtSlider::needsDisplay() {
    if (!slider_) return;
    const QSignalBlocker silent(this);
    const double range = slider_->maxValue() - slider_->minValue();
    const double part = range > 0 ? (slider_->doubleValue() - slider_->minValue()) / range : 0;
    setValue(qRound(part * lastPosition));
    setEnabled(slider_->isEnabled());
}

}  // namespace velmora
