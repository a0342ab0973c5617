#pragma once

#include <cstdint>
#include <optional>

namespace velmora {

/// Turns the mouse's motion into steps of scrolling. One for each tracking.
class VelmoraScrollMotion {
public:
    /// In the first three, bit 1 stands for the horizontal axis and bit 2 for the vertical one.
    enum TrackMode : std::uint16_t { horizontal = 1, vertical = 2, both = 3, jogDial = 4 };

    explicit VelmoraScrollMotion(TrackMode mode) : trackMode_(mode) {}

    /// The deltas of a scroll-wheel event.
    struct Step {
        float deltaX = 0;
        float deltaY = 0;
        bool operator==(const Step&) const = default;
    };

    /// Adds motion in pixels, y growing downward. Nothing until there is enough for a step.
    std::optional<Step> add(std::int32_t dx, std::int32_t dy);

private:
    std::optional<Step> scrollStep();
    std::optional<Step> jogStep();
    void turnTo(char direction);

    TrackMode trackMode_;
    std::int32_t deltaX_ = 0;
    std::int32_t deltaY_ = 0;
    /// The jog dial's state: the direction of the step before (l, r, u for down the screen, d for
    /// up), 0 before the first; the axis that the first step chose; and the sense of scrolling.
    char lastJogDir_ = 0;
    TrackMode jogAxis_ = vertical;
    std::int32_t jogSign_ = 1;
};

}  // namespace velmora
