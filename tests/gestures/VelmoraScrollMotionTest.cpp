#include "gestures/VelmoraScrollMotion.h"

#include <gtest/gtest.h>

#include <vector>

namespace velmora {
namespace {

using Motion = VelmoraScrollMotion;
using Step = Motion::Step;

struct Sample {
    int dx;
    int dy;
    std::optional<Step> step;
};

struct Row {
    const char* what;
    Motion::TrackMode mode;
    std::vector<Sample> samples;
};

constexpr float third = static_cast<float>(1 / 3.0);
constexpr float fourThirds = static_cast<float>(4 / 3.0);
constexpr float fiveThirds = static_cast<float>(5 / 3.0);

TEST(VelmoraScrollMotionTest, MotionBecomesStepsAsEachModeHasThem) {
    const std::vector<Row> rows = {
        {"two pixels are kept for the third",
         Motion::vertical,
         {{0, 2, {}}, {0, 1, Step{0, -1}}, {0, 2, {}}}},
        {"a remainder is sent and carried",
         Motion::horizontal,
         {{4, 9, Step{-fourThirds, 0}}, {1, 0, {}}, {1, 0, Step{-1, 0}}}},
        {"both axes go together",
         Motion::both,
         {{-5, 1, Step{fiveThirds, -third}}, {-1, 0, Step{1, -third}}}},
        {"the sign of a remainder is that of the motion",
         Motion::vertical,
         {{0, -4, Step{0, fourThirds}}, {0, -2, Step{0, 1}}}},
        {"the other axis counts for nothing", Motion::vertical, {{50, 2, {}}, {-50, 0, {}}}},
        {"a jog needs three pixels of distance",
         Motion::jogDial,
         {{2, 2, {}}, {1, 0, Step{-1, 0}}}},
        {"a jog forgets what a step leaves",
         Motion::jogDial,
         {{5, 0, Step{-1, 0}}, {1, 0, {}}, {2, 0, Step{-1, 0}}}},
        {"down the screen and to the right go on, up and to the left go back",
         Motion::jogDial,
         {{3, 0, Step{-1, 0}}, {0, 3, Step{-1, 0}}, {-3, 0, Step{-1, 0}}, {0, -3, Step{-1, 0}}}},
        {"the other way round the sense is the other",
         Motion::jogDial,
         {{3, 0, Step{-1, 0}}, {0, -3, Step{1, 0}}, {-6, 0, Step{2, 0}}, {0, 6, Step{2, 0}}}},
        {"back along a line flips the sense",
         Motion::jogDial,
         {{0, 3, Step{0, -1}}, {0, -3, Step{0, 1}}, {0, -3, Step{0, 1}}, {0, 3, Step{0, -1}}}},
        {"the first step chooses axis and sense", Motion::jogDial, {{0, -30, Step{0, 10}}}},
        {"a tie is sideways", Motion::jogDial, {{-3, 3, Step{1, 0}}}},
    };
    for (const Row& row : rows) {
        Motion motion(row.mode);
        for (const Sample& sample : row.samples) {
            EXPECT_EQ(motion.add(sample.dx, sample.dy), sample.step)
                << row.what << " at " << sample.dx << ' ' << sample.dy;
        }
    }
}

}  // namespace
}  // namespace velmora
