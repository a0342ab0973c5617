#include "platform/qt/trace/DashedLine.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace velmora {

namespace {

/// So that the rectangle around a slanting piece is never much larger than the piece.
constexpr double longestPiece = 64;

}  // namespace

DashedLine::DashedLine(const StrokeStyle& style) : lengths_(style.dash.begin(), style.dash.end()) {
    const double sum = std::accumulate(lengths_.begin(), lengths_.end(), 0.0);
    const bool valid = std::all_of(lengths_.begin(), lengths_.end(), [](double length) {
        return std::isfinite(length) && length >= 0;
    });
    if (!valid || sum <= 0) {
        lengths_.clear();
        return;
    }
    // With an odd count, what is on in one turn is off in the next.
    if (lengths_.size() % 2 != 0)
        lengths_.insert(lengths_.end(), style.dash.begin(), style.dash.end());
    const double period = std::accumulate(lengths_.begin(), lengths_.end(), 0.0);
    phase_ = std::fmod(static_cast<double>(style.dashPhase), period);
    if (!std::isfinite(phase_)) phase_ = 0;
    if (phase_ < 0) phase_ += period;
}

void DashedLine::moveTo(QPointF point) {
    point_ = point;
    index_ = 0;
    left_ = lengths_.empty() ? std::numeric_limits<double>::infinity() : lengths_[0];
    double skipped = phase_;
    while (skipped > 0) {
        const double step = std::min(skipped, left_);
        advance(step);
        skipped -= step;
    }
}

void DashedLine::advance(double length) {
    left_ -= length;
    while (left_ <= 0) {
        index_ = (index_ + 1) % lengths_.size();
        left_ = lengths_[index_];
    }
}

std::vector<QLineF> DashedLine::lineTo(QPointF point) {
    std::vector<QLineF> pieces;
    const QLineF way(point_, point);
    const double length = std::isfinite(way.length()) ? way.length() : 0;
    for (double at = 0; at < length;) {
        const double step = std::min({left_, length - at, longestPiece});
        const double next = step < length - at ? at + step : length;
        if (index_ % 2 == 0) {
            pieces.emplace_back(way.pointAt(at / length), way.pointAt(next / length));
        }
        advance(step);
        at = next;
    }
    point_ = point;
    return pieces;
}

}  // namespace velmora
