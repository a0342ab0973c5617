#include "gestures/VelmoraScrollMotion.h"

#include <cmath>
#include <cstdlib>
#include <string_view>

namespace velmora {

namespace {

constexpr std::int32_t pixelsPerStep = 3;

/// Two pixels each way are not yet a step of the jog dial.
constexpr std::int64_t shortestJogSquared = 8;

/// Around the dial, each direction a quarter turn further than the one before.
constexpr std::string_view turn = "lurd";

char directionOf(std::int64_t dx, std::int64_t dy) {
    if (std::abs(dx) >= std::abs(dy)) return dx >= 0 ? 'r' : 'l';
    return dy >= 0 ? 'u' : 'd';
}

}  // namespace

std::optional<VelmoraScrollMotion::Step> VelmoraScrollMotion::add(std::int32_t dx,
                                                                  std::int32_t dy) {
    if (trackMode_ != jogDial) {
        if ((trackMode_ & horizontal) == 0) dx = 0;
        if ((trackMode_ & vertical) == 0) dy = 0;
    }
    deltaX_ += dx;
    deltaY_ += dy;
    return trackMode_ == jogDial ? jogStep() : scrollStep();
}

std::optional<VelmoraScrollMotion::Step> VelmoraScrollMotion::scrollStep() {
    if (std::abs(deltaX_) < pixelsPerStep && std::abs(deltaY_) < pixelsPerStep) return {};
    const Step step{static_cast<float>(-deltaX_ / double{pixelsPerStep}),
                    static_cast<float>(-deltaY_ / double{pixelsPerStep})};
    deltaX_ %= pixelsPerStep;
    deltaY_ %= pixelsPerStep;
    return step;
}

std::optional<VelmoraScrollMotion::Step> VelmoraScrollMotion::jogStep() {
    const std::int64_t squared = std::int64_t{deltaX_} * deltaX_ + std::int64_t{deltaY_} * deltaY_;
    if (squared <= shortestJogSquared) return {};
    turnTo(directionOf(deltaX_, deltaY_));
    const auto distance = static_cast<std::int64_t>(std::sqrt(static_cast<double>(squared)));
    const std::int64_t steps = distance / pixelsPerStep;
    const auto amount = static_cast<float>(jogSign_ * steps);
    deltaX_ = 0;
    deltaY_ = 0;
    return jogAxis_ == horizontal ? Step{amount, 0} : Step{0, amount};
}

void VelmoraScrollMotion::turnTo(char direction) {
    if (lastJogDir_ == 0) {
        jogAxis_ = direction == 'l' || direction == 'r' ? horizontal : vertical;
        jogSign_ = direction == 'l' || direction == 'd' ? 1 : -1;
        lastJogDir_ = direction;
    }
    switch ((turn.find(direction) - turn.find(lastJogDir_)) % turn.size()) {
        case 1: jogSign_ = 1; break;
        case 2: jogSign_ = -jogSign_; break;
        case 3: jogSign_ = -1; break;
        default: break;
    }
    lastJogDir_ = direction;
}

}  // namespace velmora
