#include "gestures/VelmoraGestureFeedbackWindow.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tuple>

#include "platform/appkit/NSApplication.h"
#include "platform/port/Desktop.h"
#include "support/HeadlessHost.h"

namespace velmora {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::FloatNear;

class VelmoraGestureFeedbackWindowTest : public testing::Test {
protected:
    VelmoraGestureFeedbackWindowTest() { host.launch(); }

    bool isShown() { return host.desktop().drawnWindow() != nullptr; }
    const DisplayList& drawn() { return host.desktop().drawnWindow()->list(); }
    const StrokeOperation& stroke(int index) {
        return std::get<StrokeOperation>(drawn()[static_cast<std::size_t>(index)]);
    }
    /// Where the trace lies in its window.
    std::vector<NSPoint> pointsInWindow() {
        std::vector<NSPoint> points;
        for (const PathElement& element : stroke(1).path) {
            points.push_back(stroke(1).transform.transformPoint(element.point));
        }
        return points;
    }
    /// The opacities after each 10 ms from here on, in a mode of the loop, as long as it is shown.
    std::vector<float> fade(RunLoopMode mode) {
        std::vector<float> alphas;
        Time now = desktop().now();
        while (isShown() && alphas.size() < 20) {
            now += milliseconds(10);
            NSApp().nextEventMatchingMask_untilDate_inMode_dequeue(NSAnyEventMask, now, mode, true);
            alphas.push_back(isShown() ? host.desktop().drawnWindow()->alphaValue() : 0);
        }
        return alphas;
    }

    HeadlessHost host{"Editor"};
    std::shared_ptr<VelmoraGestureFeedbackWindow> window =
        std::make_shared<VelmoraGestureFeedbackWindow>();
};

TEST_F(VelmoraGestureFeedbackWindowTest, TheWindowIsTheTraceWithThreePointsAroundIt) {
    struct Row {
        NSPoint point;
        NSRect frame;
        NSPoint inWindow;
    };
    // The main screen's neighbour lies left of it, where coordinates are below zero.
    const std::vector<Row> rows{
        {{100, 200}, {{97, 197}, {6, 6}}, {3, 3}},
        {{130, 200}, {{97, 197}, {36, 6}}, {33, 3}},
        {{110, 150.5F}, {{97, 147.5F}, {36, 55.5F}}, {13, 3}},
        {{-20, 300}, {{-23, 147.5F}, {156, 155.5F}}, {3, 152.5F}},
        {{50, 200}, {{-23, 147.5F}, {156, 155.5F}}, {73, 52.5F}},
    };
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (i == 0) {
            window->startAtPoint(rows[i].point);
        } else {
            window->addPoint(rows[i].point);
        }
        EXPECT_EQ(window->frame(), rows[i].frame) << i;
        EXPECT_EQ(host.desktop().drawnWindow()->frame(), rows[i].frame) << i;
        EXPECT_EQ(pointsInWindow().size(), i + 1);
        EXPECT_EQ(pointsInWindow().back(), rows[i].inWindow) << i;
    }
    EXPECT_GT(window->level(), 0);
    EXPECT_EQ(window->contentView()->hitTest({3, 3}), nullptr);
}

TEST_F(VelmoraGestureFeedbackWindowTest, ADashedLineInTheHueHasAWhiteCore) {
    struct Row {
        double hue;
        std::tuple<int, int, int> color;
    };
    // A hue is counted from the same colour each time.
    for (const Row& row :
         std::vector<Row>{{20, {105, 251, 105}}, {40, {105, 105, 251}}, {0, {251, 105, 105}}}) {
        VelmoraGestureFeedbackView::setHue(row.hue);
        window->startAtPoint({10, 10});
        window->addPoint({50, 10});
        ASSERT_EQ(drawn().size(), 3U);
        const auto& cleared = std::get<FillOperation>(drawn()[0]);
        EXPECT_EQ(cleared.color, NSColor::clearColor());
        EXPECT_EQ(cleared.rect, (NSRect{{}, {46, 6}}));
        const NSColor color = stroke(1).color;
        const auto byte = [](float part) { return static_cast<int>(part * 255 + 0.5F); };
        EXPECT_EQ(std::tuple(byte(color.red), byte(color.green), byte(color.blue)), row.color);
        EXPECT_EQ(color.alpha, 1);
        EXPECT_EQ(stroke(2).color, NSColor::whiteColor());
        EXPECT_EQ(stroke(1).style.width, 4);
        EXPECT_EQ(stroke(2).style.width, 2);
        for (const int i : {1, 2}) {
            EXPECT_THAT(stroke(i).style.dash, ElementsAre(3, 3));
            EXPECT_EQ(stroke(i).style.dashPhase, 0);
            EXPECT_EQ(stroke(i).style.cap, NSRoundLineCapStyle);
            EXPECT_EQ(stroke(i).style.join, NSRoundLineJoinStyle);
        }
    }
}

TEST_F(VelmoraGestureFeedbackWindowTest, ASampleAtTheSamePointChangesNothing) {
    window->startAtPoint({10, 10});
    window->addPoint({10, 10});
    EXPECT_EQ(stroke(1).path.count, 1U);
    window->addPoint({20, 10});
    const auto* before = drawn().data();
    window->addPoint({20, 10});
    EXPECT_EQ(stroke(1).path.count, 2U);
    EXPECT_EQ(drawn().data(), before) << "drawn anew";
    window->addPoint({10, 10});
    EXPECT_EQ(stroke(1).path.count, 3U);
}

TEST_F(VelmoraGestureFeedbackWindowTest, TheTraceFadesInTenStepsWhateverLoopRuns) {
    for (const RunLoopMode mode : {NSDefaultRunLoopMode, NSModalPanelRunLoopMode}) {
        window->startAtPoint({10, 10});
        window->addPoint({50, 10});
        window->goAway(nullptr);
        EXPECT_EQ(window->alphaValue(), 1);
        std::vector<testing::Matcher<float>> steps;
        for (int step = 9; step >= 1; --step) {
            steps.push_back(FloatNear(static_cast<float>(step) / 10, 1e-6F));
        }
        steps.emplace_back(0.0F);
        EXPECT_THAT(fade(mode), testing::ElementsAreArray(steps));
        EXPECT_EQ(window->frame(), (NSRect{{-20, -20}, {1, 1}}));
        for (const RunLoopMode each : {NSDefaultRunLoopMode, NSModalPanelRunLoopMode}) {
            EXPECT_EQ(NSRunLoop::currentRunLoop().nextFireDate(each), std::nullopt);
        }
    }
}

TEST_F(VelmoraGestureFeedbackWindowTest, AFadeGoesOnWhereAModalPanelComesUpOrGoes) {
    window->startAtPoint({10, 10});
    window->goAway(nullptr);
    RunLoopMode mode = NSDefaultRunLoopMode;
    Time now = desktop().now();
    for (int step = 0; step < 20 && isShown(); ++step) {
        now += milliseconds(10);
        NSApp().nextEventMatchingMask_untilDate_inMode_dequeue(NSAnyEventMask, now, mode, true);
        if (step == 2) mode = NSModalPanelRunLoopMode;
        if (step == 5) mode = NSDefaultRunLoopMode;
    }
    EXPECT_FALSE(isShown());
    // What waited for its mode is due at once when that comes: a step or two are early at the most.
    EXPECT_GE(now, milliseconds(80));
    EXPECT_LE(now, milliseconds(120));
}

TEST_F(VelmoraGestureFeedbackWindowTest, ANewStrokeEndsTheFadeOfTheLast) {
    window->startAtPoint({10, 10});
    window->addPoint({50, 10});
    window->goAway(nullptr);
    host.advance(55);
    EXPECT_THAT(window->alphaValue(), FloatNear(0.5F, 1e-6F));
    window->startAtPoint({200, 200});
    EXPECT_EQ(window->alphaValue(), 1);
    EXPECT_EQ(window->frame(), (NSRect{{197, 197}, {6, 6}}));
    EXPECT_THAT(pointsInWindow(), ElementsAre(NSPoint{3, 3}));
    host.advance(500);
    EXPECT_TRUE(isShown());
    EXPECT_EQ(window->alphaValue(), 1);

    // The second end of a stroke begins the one fade again.
    window->goAway(nullptr);
    host.advance(55);
    window->goAway(nullptr);
    EXPECT_EQ(fade(NSDefaultRunLoopMode).size(), 10U);
}

TEST_F(VelmoraGestureFeedbackWindowTest, ATraceThatIsShownOutlivesItsNextSample) {
    // A desktop compares what it drew last with what comes: that must stay as it was.
    window->startAtPoint({10, 10});
    window->addPoint({50, 10});
    const DisplayList before = drawn();
    const auto& kept = std::get<StrokeOperation>(before[1]).path;
    for (int i = 0; i < 100; ++i) window->addPoint({static_cast<float>(i), 30});
    EXPECT_EQ(stroke(1).path.elements, kept.elements) << "copied";
    window->startAtPoint({300, 300});
    EXPECT_EQ(kept.count, 2U);
    EXPECT_EQ(kept.begin()[1].point, (NSPoint{50, 10}));
    EXPECT_NE(stroke(1).path.elements, kept.elements);
}

}  // namespace
}  // namespace velmora
