#include "platform/qt/windows/QtScrollView.h"

#include <QAbstractScrollArea>
#include <QPointer>
#include <QScrollBar>
#include <QVariant>
#include <algorithm>
#include <cmath>
#include <cstdint>

namespace velmora {

namespace {

/// What a bar of ours was set to, and how much more it should have been: a bar holds whole numbers.
constexpr const char* fractionMark = "_velmora_fraction";

bool isReversed(const QScrollBar& bar) {
    return bar.orientation() == Qt::Horizontal && bar.isRightToLeft();
}

/// Where what is visible begins along the bar, from the left or the top: a whole number of the
/// bar's, and from 0 to 1 more. A float would not hold it where bars are long.
struct Origin {
    std::int64_t whole;
    double fraction;
};

std::int64_t sumOfEnds(const QScrollBar& bar) {
    return std::int64_t{bar.minimum()} + bar.maximum();
}

Origin originOf(const QScrollBar& bar) {
    const QPointF kept = bar.property(fractionMark).toPointF();
    const bool isOurs = bar.property(fractionMark).isValid() && kept.x() == bar.value();
    const double fraction = isOurs ? kept.y() : 0;
    if (!isReversed(bar)) return {bar.value(), fraction};
    const std::int64_t whole = sumOfEnds(bar) - bar.value();
    return fraction > 0 ? Origin{whole - 1, 1 - fraction} : Origin{whole, 0};
}

/// What the document's coordinates call the origin.
float placeOf(const Origin& origin) {
    return static_cast<float>(origin.fraction);
}

void scrollTo(QScrollBar& bar, float place) {
    const Origin now = originOf(bar);
    if (place == placeOf(now)) return;
    // At the end the place may have been rounded beyond it.
    double origin =
        std::clamp<double>(static_cast<double>(now.whole) + place, bar.minimum(), bar.maximum());
    if (isReversed(bar)) origin = static_cast<double>(sumOfEnds(bar)) - origin;
    const double whole = std::floor(origin);
    // The host hears of it, and may take the bar away.
    const QPointer<QScrollBar> kept(&bar);
    bar.setValue(static_cast<int>(whole));
    if (kept) bar.setProperty(fractionMark, QPointF(bar.value(), origin - whole));
}

float constrained(const QScrollBar& bar, float place) {
    const std::int64_t now = originOf(bar).whole;
    return std::clamp(place, static_cast<float>(bar.minimum() - now),
                      static_cast<float>(bar.maximum() - now));
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
        if (area_) scrollTo(*area_->horizontalScrollBar(), point.x);
        if (area_) scrollTo(*area_->verticalScrollBar(), point.y);
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
    return {{placeOf(originOf(across)), placeOf(originOf(down))},
            {static_cast<float>(across.pageStep()), static_cast<float>(down.pageStep())}};
}

}  // namespace velmora
