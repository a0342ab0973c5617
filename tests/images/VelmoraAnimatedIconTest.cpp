#include "images/VelmoraAnimatedIcon.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>

#include "images/VelmoraImageFactory.h"
#include "platform/appkit/NSApplication.h"
#include "platform/appkit/panels/NSPanel.h"
#include "product/ProductAddresses.h"
#include "support/HeadlessHost.h"

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int turn = 105;

class VelmoraAnimatedIconTest : public testing::Test {
protected:
    VelmoraAnimatedIconTest() {
        icon_->awakeFromNib();
        panel_->addSubview(icon_);
    }

    /// The hue after so many frames from the beginning.
    static double hueAfter(int frames) {
        const auto other = std::make_shared<VelmoraAnimatedIcon>();
        for (int i = 0; i < frames; ++i) other->animationTick(nullptr);
        return other->animationHue();
    }

    bool showsHue(double hue) const {
        return icon_->image()->bitmap().pixels ==
               VelmoraImageFactory::iconWithHue(hue)->bitmap().pixels;
    }

    HeadlessHost host_;
    std::shared_ptr<VelmoraAnimatedIcon> icon_ = std::make_shared<VelmoraAnimatedIcon>();
    NSPanelRef panel_ = std::make_shared<NSPanel>("About", std::vector<NSPanel::Row>());
};

TEST_F(VelmoraAnimatedIconTest, AStepDependsOnTheHueItBeginsWith) {
    const auto below = [](double hue) { return std::nextafter(hue, 0); };
    const auto above = [](double hue) { return std::nextafter(hue, 60); };
    const std::pair<double, double> rows[] = {
        {0, 1},           {below(6), 1},  {6, 0.5},         {below(8), 0.5},  {8, 0.2},
        {below(11), 0.2}, {11, 0.2},      {above(11), 0.5}, {14, 0.5},        {above(14), 1},
        {below(30), 1},   {30, 0.2},      {below(35), 0.2}, {35, 0.5},        {below(38), 0.5},
        {38, 1},          {below(45), 1}, {45, 0.5},        {below(50), 0.5}, {50, 1},
        {59, 1},
    };
    for (const auto& [hue, step] : rows) {
        EXPECT_EQ(VelmoraAnimatedIcon::stepFrom(hue), step) << "from " << hue;
    }
}

TEST_F(VelmoraAnimatedIconTest, ATurnHas105FramesAndTheNextIsTheSame) {
    std::vector<double> hues;
    for (int i = 0; i < turn; ++i) {
        icon_->animationTick(nullptr);
        hues.push_back(icon_->animationHue());
        EXPECT_TRUE(showsHue(hues.back())) << hues.back();
    }
    const std::vector<double> begin(hues.begin(), hues.begin() + 12);
    EXPECT_THAT(begin, ElementsAre(1, 2, 3, 4, 5, 6, 6.5, 7, 7.5, 8, 8.2, 8.2 + 0.2));
    EXPECT_EQ(hues.back(), 0);
    EXPECT_EQ(std::count(hues.begin(), hues.end(), 0), 1);
    EXPECT_LT(*std::max_element(hues.begin(), hues.end()), 60);
    for (const double hue : hues) {
        icon_->animationTick(nullptr);
        ASSERT_EQ(icon_->animationHue(), hue);
    }
}

TEST_F(VelmoraAnimatedIconTest, ItRunsFromTheFirstTimeItIsDrawn) {
    EXPECT_TRUE(showsHue(0));
    host_.advance(1000);
    EXPECT_EQ(icon_->animationHue(), 0);
    panel_->makeKeyAndOrderFront();
    const NSTimerRef timer = icon_->animationTimer();
    icon_->drawRect({{0, 0}, {10, 10}});
    icon_->startAnimation();
    EXPECT_EQ(icon_->animationTimer(), timer);
    host_.advance(1050);
    EXPECT_EQ(icon_->animationHue(), hueAfter(10));
    // Also while nobody sees it.
    panel_->orderOut();
    host_.advance(1000);
    EXPECT_EQ(icon_->animationHue(), hueAfter(20));
}

TEST_F(VelmoraAnimatedIconTest, ItRunsInAModalSessionAtTheSamePace) {
    panel_->makeKeyAndOrderFront();
    host_.pause(550);
    host_.then([this] { NSApp().runModalForWindow(*panel_); });
    host_.pause(1000);
    host_.then([this] {
        EXPECT_EQ(icon_->animationHue(), hueAfter(15));
        NSApp().stopModal();
    });
    host_.pause(1000);
    host_.then([] {});
    host_.run();
    EXPECT_EQ(icon_->animationHue(), hueAfter(25));
}

TEST_F(VelmoraAnimatedIconTest, TakenOutOfItsPanelItStopsAndGoesOnFromThereLater) {
    panel_->makeKeyAndOrderFront();
    host_.advance(1250);
    icon_->removeFromSuperviewWithoutNeedingDisplay();
    EXPECT_EQ(icon_->animationTimer(), nullptr);
    EXPECT_EQ(icon_->superview(), nullptr);
    EXPECT_THAT(panel_->controls(), IsEmpty());
    host_.advance(1000);
    EXPECT_EQ(icon_->animationHue(), hueAfter(12));
    panel_->addSubview(icon_);
    EXPECT_EQ(icon_->window(), panel_);
    host_.advance(150);
    EXPECT_EQ(icon_->animationHue(), hueAfter(13));
    // It was only moved.
    panel_->addSubview(icon_);
    EXPECT_THAT(panel_->controls(), ElementsAre(icon_));
}

TEST_F(VelmoraAnimatedIconTest, ItIsFreedWhenItIsTakenOutOrItsPanelGoes) {
    for (const bool panelGoes : {false, true}) {
        auto panel = std::make_shared<NSPanel>("About", std::vector<NSPanel::Row>());
        auto icon = std::make_shared<VelmoraAnimatedIcon>();
        icon->awakeFromNib();
        panel->addSubview(icon);
        panel->makeKeyAndOrderFront();
        const std::weak_ptr<VelmoraAnimatedIcon> left = icon;
        icon = nullptr;
        host_.advance(150);
        ASSERT_FALSE(left.expired());
        if (panelGoes) {
            panel = nullptr;
        } else {
            left.lock()->removeFromSuperviewWithoutNeedingDisplay();
        }
        EXPECT_TRUE(left.expired());
    }
}

TEST_F(VelmoraAnimatedIconTest, AClickOpensTheHomePageAndDisturbsNothing) {
    panel_->makeKeyAndOrderFront();
    host_.advance(350);
    const NSTimerRef timer = icon_->animationTimer();
    icon_->performClick(nullptr);
    EXPECT_THAT(host_.opened(), ElementsAre(productHomePage()));
    EXPECT_EQ(icon_->animationTimer(), timer);
    icon_->setEnabled(false);
    icon_->performClick(nullptr);
    EXPECT_EQ(host_.opened().size(), 1U);
    host_.advance(100);
    EXPECT_EQ(icon_->animationHue(), hueAfter(4));
}

}  // namespace
}  // namespace velmora
