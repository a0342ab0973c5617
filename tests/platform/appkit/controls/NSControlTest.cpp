#include "platform/appkit/controls/NSControl.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

#include "platform/appkit/controls/NSButton.h"
#include "platform/appkit/controls/NSMatrix.h"
#include "platform/appkit/controls/NSSlider.h"
#include "platform/appkit/controls/NSTextField.h"
#include "platform/foundation/NSNotificationCenter.h"
#include "platform/runtime/Class.h"
#include "support/HeadlessHost.h"

namespace velmora {
namespace {

using testing::ElementsAre;

/// Notes the number that each sender of the action has, and texts that change.
class Target final : public NSObject {
public:
    static Class& classObject() {
        static auto* object = &(new Class("ControlTestTarget", &NSObject::classObject()))
                                   ->method<&Target::act>("act:")
                                   .method<&Target::textDidChange>("textDidChange:");
        return *object;
    }
    Class& isa() const override { return classObject(); }

    std::vector<double> values;
    std::vector<std::string> texts;

private:
    void act(const Id& sender) { values.push_back(static_cast<NSControl&>(*sender).doubleValue()); }
    void textDidChange(const NSNotification& notification) {
        texts.push_back(static_cast<NSTextView&>(*notification.object).string());
    }
};

class NSControlTest : public testing::Test {
protected:
    template <class Control>
    std::shared_ptr<Control> acting(std::shared_ptr<Control> control) {
        control->setTarget(target_);
        control->setAction(Selector::named("act:"));
        return control;
    }

    HeadlessHost host_;
    std::shared_ptr<Target> target_ = std::make_shared<Target>();
};

class CountingPeer final : public ControlPeer {
public:
    void draw() override {}
    void needsDisplay() override { ++changes; }
    int changes = 0;
};

TEST_F(NSControlTest, AChangeOfACellShowsInItsControlAloneAndInNoneThatIsGone) {
    CountingPeer peer;
    const auto matrix = std::make_shared<NSMatrix>(NSListModeMatrix, 2, 1);
    matrix->setPeer(&peer);
    const auto cell = std::static_pointer_cast<NSTextFieldCell>(matrix->cellWithTag(1));
    cell->setTextColor(NSColor::redColor());
    EXPECT_EQ(peer.changes, 1);
    NSCellRef kept;
    {
        const NSTextField field;
        kept = field.cell();
    }
    kept->setStringValue("nobody looks");
    NSControl shown;
    shown.setPeer(&peer);
    const NSCellRef before = shown.cell();
    shown.setCell(kept);
    peer.changes = 0;
    before->setEnabled(false);
    EXPECT_EQ(peer.changes, 0);
    shown.setStringValue("ru");
    EXPECT_EQ(peer.changes, 1);
    EXPECT_EQ(kept->stringValue(), "ru");
}

TEST_F(NSControlTest, ValuesAreReadAsTextsAndNumbers) {
    const struct {
        ObjectValue value;
        const char* text;
        int number;
    } rows[] = {
        {PropertyList("12abc"), "12abc", 12},
        {PropertyList(7), "7", 7},
        {PropertyList(2.5), "2.5", 2},
        {PropertyList(true), "1", 1},
        {PropertyList(NSArray()), "", 0},
        {ObjectValue(), "", 0},
        {Id(target_), "", 0},
    };
    for (const auto& row : rows) {
        NSCell cell;
        cell.setObjectValue(row.value);
        EXPECT_EQ(cell.stringValue(), row.text);
        EXPECT_EQ(cell.intValue(), row.number) << row.text;
    }
}

TEST_F(NSControlTest, ACheckBoxSwitchesBeforeItActs) {
    const auto box = acting(std::make_shared<NSButton>());
    box->performClick(nullptr);
    box->setButtonType(NSSwitchButton);
    box->performClick(nullptr);
    EXPECT_EQ(box->intValue(), 1);
    box->setEnabled(false);
    box->performClick(nullptr);
    EXPECT_EQ(box->intValue(), 1);
    box->setIntValue(0);
    EXPECT_EQ(box->state(), NSOffState);
    EXPECT_EQ(target_->values.size(), 2U);
}

TEST_F(NSControlTest, InARadioMatrixOneIsOnAndInAListNothingHappens) {
    const auto radio = acting(std::make_shared<NSMatrix>(NSRadioModeMatrix, 1, 3));
    const auto checks = acting(std::make_shared<NSMatrix>(NSTrackModeMatrix, 2, 2));
    const auto list = acting(std::make_shared<NSMatrix>(NSListModeMatrix, 1, 2));
    const auto states = [](const NSMatrix& matrix) {
        std::string text;
        for (const NSCellRef& cell : matrix.cells()) text += std::to_string(cell->state());
        return text;
    };
    radio->userClicked(0, 1);
    radio->userClicked(0, 2);
    radio->userClicked(0, 3);
    EXPECT_EQ(states(*radio), "001");
    EXPECT_FALSE(radio->selectCellWithTag(9));
    EXPECT_EQ(radio->selectedCell()->tag(), 2);
    checks->userClicked(0, 1);
    checks->userClicked(1, 0);
    checks->userClicked(0, 1);
    EXPECT_EQ(states(*checks), "0010");
    checks->cellWithTag(3)->setEnabled(false);
    checks->userClicked(1, 1);
    checks->setEnabled(false);
    checks->userClicked(0, 0);
    EXPECT_EQ(states(*checks), "0010");
    list->userClicked(0, 1);
    EXPECT_EQ(target_->values.size(), 5U);
}

TEST_F(NSControlTest, ASliderStaysWithinItsBoundsAndActsAsItMovesOrAtTheEnd) {
    const auto slider = acting(std::make_shared<NSSlider>());
    slider->setMaxValue(60);
    slider->userMovedTo(20, false);
    slider->setContinuous(false);
    slider->userMovedTo(30, false);
    slider->userMovedTo(1e300, true);
    slider->userMovedTo(-1, true);
    EXPECT_THAT(target_->values, ElementsAre(20, 60, 0));
    slider->setDoubleValue(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(slider->doubleValue(), 0);
}

TEST_F(NSControlTest, AFieldActsOnceTheUserIsDoneWithAChange) {
    const auto field = acting(std::make_shared<NSTextField>());
    field->userEndedEditing();
    field->userChangedText("12");
    field->userChangedText("123");
    field->userEndedEditing();
    field->userEndedEditing();
    field->userChangedText("9");
    field->setIntValue(50);
    field->userEndedEditing();
    EXPECT_THAT(target_->values, ElementsAre(123));
    field->setEditable(false);
    field->userChangedText("7");
    EXPECT_EQ(field->stringValue(), "50");
}

TEST_F(NSControlTest, ATextAreaTellsOfWhatTheUserTypesAndOfNothingElse) {
    NSTextView area;
    area.setDelegate(target_);
    area.setString("from the program");
    area.userChangedText("one");
    area.userChangedText("one");
    area.setEditable(false);
    area.userChangedText("two");
    EXPECT_EQ(area.string(), "one");
    EXPECT_THAT(target_->texts, ElementsAre("one"));
}

}  // namespace
}  // namespace velmora
