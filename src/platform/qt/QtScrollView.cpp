#include "platform/qt/QtScrollView.h"

#include <QAbstractScrollArea>
#include <QPointer>
#include <QScrollBar>
#include <QVariant>
#include <algorithm>
#include <cmath>

namespace velmora {

namespace {

/// What a bar of ours was set to, and how much more it should have been: a bar holds whole numbers.
constexpr const char* fractionMark = "_velmora_fraction";

bool isReversed(const QScrollBar& bar) {
    return bar.orientation() == Qt::Horizontal && bar.isRightToLeft();
}

/// Where what is visible begins along the bar, from the left or the top.
float originOf(const QScrollBar& bar) {
    const QPointF kept = bar.property(fractionMark).toPointF();
    const bool isOurs = bar.property(fractionMark).isValid() && kept.x() == bar.value();
    const double value = bar.value() + (isOurs ? kept.y() : 0);
    return static_cast<float>(isReversed(bar) ? bar.minimum() + bar.maximum() - value : value);
}

void setOrigin(QScrollBar& bar, float place) {
    // A bar that is not to move keeps its value also where that has more digits than the place.
    if (place == originOf(bar)) return;
    // At the end the place may have been rounded beyond it.
    double origin = std::clamp<double>(place, bar.minimum(), bar.maximum());
    if (isReversed(bar)) origin = bar.minimum() + bar.maximum() - origin;
    const double whole = std::floor(origin);
    // The host hears of it, and may take the bar away.
    const QPointer<QScrollBar> kept(&bar);
    bar.setValue(static_cast<int>(whole));
    if (kept) bar.setProperty(fractionMark, QPointF(bar.value(), origin - whole));
}

float constrained(const QScrollBar& bar, float origin) {
    return std::clamp(origin, static_cast<float>(bar.minimum()), static_cast<float>(bar.maximum()));
}

}  // namespace

class QtScrollView::ClipView final : public NSClipView {
public:
    explicit ClipView(QAbstractScrollArea* area) : area_(area) {}

    NSPoint constrainScrollPoint(NSPoint point) override {
        if (!area_) return point;
        return {constrained(*area_->horizontalScrollBar(), point.x),
                constrained(*area_->verticalScrollBar(), point.y)};
    }

    void scrollToPoint(NSPoint point) override {
        // The host hears of each bar's change, and may take the area away.
        if (area_) setOrigin(*area_->horizontalScrollBar(), point.x);
        if (area_) setOrigin(*area_->verticalScrollBar(), point.y);
    }

private:
    QPointer<QAbstractScrollArea> area_;
};

bool QtScrollView::canScroll(const QWidget& widget) {
    const auto* area = qobject_cast<const QAbstractScrollArea*>(&widget);
    if (!area) return false;
    const auto hasRange = [](const QScrollBar* bar) { return bar->maximum() > bar->minimum(); };
    return hasRange(area->horizontalScrollBar()) || hasRange(area->verticalScrollBar());
}

QAbstractScrollArea* QtScrollView::area() const {
    return qobject_cast<QAbstractScrollArea*>(widget());
}

std::shared_ptr<NSClipView> QtScrollView::contentView() {
    return area() ? std::make_shared<ClipView>(area()) : nullptr;
}

float QtScrollView::horizontalLineScroll() {
    return area() ? static_cast<float>(area()->horizontalScrollBar()->singleStep()) : 0;
}

float QtScrollView::verticalLineScroll() {
    return area() ? static_cast<float>(area()->verticalScrollBar()->singleStep()) : 0;
}

NSRect QtScrollView::documentVisibleRect() {
    if (!area()) return {};
    const QScrollBar& across = *area()->horizontalScrollBar();
    const QScrollBar& down = *area()->verticalScrollBar();
    return {{originOf(across), originOf(down)},
            {static_cast<float>(across.pageStep()), static_cast<float>(down.pageStep())}};
}

}  // namespace velmora
