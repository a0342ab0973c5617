#include "preferences/VelmoraDefaults.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "platform/appkit/drawing/NSImage.h"
#include "platform/foundation/files/FileHistory.h"
#include "platform/foundation/files/PropertyListFile.h"
#include "support/HeadlessHost.h"

namespace velmora {
namespace {

constexpr const char* fileName = "VelmoraDefaults.plist";

std::shared_ptr<VelmoraDefaults> makeDefaults() {
    auto defaults = std::make_shared<VelmoraDefaults>(VelmoraDefaults::Callbacks());
    defaults->initForMenuItem(nullptr);
    return defaults;
}

/// The activation entries, a line each: "flags button action".
std::vector<std::string> entries() {
    std::vector<std::string> lines;
    for (std::size_t i = 0; VelmoraActions[i]; ++i) {
        char line[96];
        std::snprintf(line, sizeof line, "%x %d %s", VelmoraModifiers[i], VelmoraMouseButton[i],
                      VelmoraActions[i].name().c_str());
        lines.emplace_back(line);
    }
    return lines;
}

TEST(VelmoraDefaultsTest, WithoutAFileNoEntryExistsAndNothingIsWritten) {
    HeadlessHost host;
    const auto defaults = makeDefaults();
    EXPECT_FALSE(defaults->readDefaults());
    EXPECT_TRUE(entries().empty());
    EXPECT_EQ(*VelmoraGestureSize, 225);
    EXPECT_EQ(*VelmoraGestureTimeout, 500);
    EXPECT_TRUE(*VelmoraGestureMakesKey);
    EXPECT_TRUE(*VelmoraGesturesDrawFeedback);
    EXPECT_FALSE(host.readSettings(fileName).has_value());
}

TEST(VelmoraDefaultsTest, EnabledLegalSlotsArePackedInSlotOrder) {
    struct Row {
        const char* name;
        const char* file;
        std::vector<std::string> packed;
    };
    const std::vector<Row> rows{
        {"two of ten",
         "{ isEnabled0=YES; mouseButton0=1; isEnabled3=1; mouseButton3=\"-1\"; modifiers3=9; }",
         {"0 1 doGesture:triggerEvent:", "120000 -1 doScrollWheelVertical:triggerEvent:"}},
        {"one that is off has the same combination",
         "{ isEnabled0=YES; mouseButton0=1; mouseButton1=1; }",
         {}},
        {"left button alone", "{ isEnabled4=YES; mouseButton4=0; }", {}},
        {"left button with Control",
         "{ isEnabled4=YES; mouseButton4=0; modifiers4=2; }",
         {"40000 0 doScrollWheelHorizontal:triggerEvent:"}},
        {"neither button nor modifiers", "{ isEnabled9=YES; }", {}},
        {"bits that are no key",
         "{ isEnabled6=YES; mouseButton6=2; modifiers6=96; }",
         {"0 2 doScrollWheelBoth:triggerEvent:"}},
        {"Function and Option",
         "{ isEnabled8=YES; mouseButton8=4; modifiers8=20; }",
         {"880000 4 doJogDial:triggerEvent:"}},
    };
    for (const Row& row : rows) {
        HeadlessHost host;
        host.writeSettings(fileName, row.file);
        makeDefaults();
        EXPECT_EQ(entries(), row.packed) << row.name;
    }
}

TEST(VelmoraDefaultsTest, TenLegalSlotsFillTheTablesToTheirEnd) {
    HeadlessHost host;
    const auto defaults = makeDefaults();
    for (int i = 0; i < VelmoraSlotCount; ++i) {
        defaults->setMouseButton_forIndex(i + 1, i);
        defaults->setEnabled_forIndex(true, i);
    }
    EXPECT_EQ(entries().size(), 10U);
    EXPECT_FALSE(VelmoraActions[10]);
    defaults->setEnabled_forIndex(false, 4);
    EXPECT_EQ(entries().size(), 9U);
    EXPECT_EQ(entries()[4], "0 6 doScrollWheelHorizontal:triggerEvent:");
}

TEST(VelmoraDefaultsTest, TheRulesOfLegalityApplyInTheirOrder) {
    HeadlessHost host;
    host.writeSettings(fileName,
                       "{ mouseButton0=0; isEnabled1=YES; mouseButton2=1; mouseButton3=1; "
                       "isEnabled3=YES; modifiers4=8; mouseButton5=1; modifiers5=1; }");
    const auto defaults = makeDefaults();
    std::string legal;
    for (int i = 0; i < VelmoraSlotCount; ++i)
        legal += defaults->isSettingLegalAtIndex(i) ? 'y' : 'n';
    EXPECT_EQ(legal, "nnnnyyyyyy");
}

TEST(VelmoraDefaultsTest, ReadsNumbersAndTextsAndKeepsWhatIsAbsentOrOfNoUse) {
    HeadlessHost host;
    host.writeSettings(fileName,
                       "{ gestureTimeout=\"800 ms\"; drawsFeedback=no; flavor=\"12.5\"; "
                       "gestureSize=(1,2); modifiers0=\"3\"; surprise=1; }");
    const auto defaults = makeDefaults();
    EXPECT_EQ(defaults->gestureTimeout(), 800);
    EXPECT_FALSE(defaults->drawsFeedback());
    EXPECT_TRUE(defaults->makeGestureWindowKey());
    EXPECT_EQ(defaults->flavor(), 12.5);
    EXPECT_EQ(defaults->gestureSize(), 15);
    EXPECT_EQ(defaults->modifierForIndex(0), 3U);
}

TEST(VelmoraDefaultsTest, WhatIsBeyond32BitsIsTheNearestNumberWhateverItsType) {
    const struct {
        const char* number;
        std::uint32_t mask;
        std::int32_t size;
    } rows[] = {
        {"96", 96, 96},
        {"2147483648", 2147483648U, 2147483647},
        {"4294967295", 4294967295U, 2147483647},
        {"4294967297", 4294967295U, 2147483647},
        {"18446744073709551615", 4294967295U, 2147483647},
        {"-1", 4294967295U, -1},
        {"-2147483648", 2147483648U, std::numeric_limits<std::int32_t>::min()},
        {"-4294967297", 2147483648U, std::numeric_limits<std::int32_t>::min()},
    };
    for (const auto& row : rows) {
        for (const char* type : {"integer", "real", "string"}) {
            SCOPED_TRACE(std::string(type) + ' ' + row.number);
            HeadlessHost host;
            const std::string value =
                std::string("<") + type + '>' + row.number + "</" + type + '>';
            host.writeSettings(fileName, "<plist version=\"1.0\"><dict><key>modifiers0</key>" +
                                             value + "<key>gestureSize</key>" + value +
                                             "</dict></plist>");
            const auto defaults = makeDefaults();
            EXPECT_EQ(defaults->modifierForIndex(0), row.mask);
            EXPECT_EQ(defaults->gestureSize(), row.size);
            defaults->writeDefaults();
            const auto written =
                dictionaryWithContentsOfFile(host.files(), host.settingsFile(fileName));
            EXPECT_EQ(*written->objectForKey("modifiers0"), PropertyList(std::int64_t{row.mask}));
            EXPECT_EQ(*written->objectForKey("gestureSize"), PropertyList(row.size));
        }
    }
}

TEST(VelmoraDefaultsTest, EveryChangeIsWrittenWholeAndInForceAtOnce) {
    HeadlessHost host;
    const auto defaults = makeDefaults();
    defaults->setModifier_forIndex(0x7F, 1);
    defaults->setMouseButton_forIndex(1, 1);
    defaults->setEnabled_forIndex(true, 1);
    defaults->setGestureSize(20);
    defaults->setGestureTimeout(700);
    defaults->setMakeGestureWindowKey(false);
    defaults->setDrawsFeedback(false);
    defaults->setFlavor(33.25);
    EXPECT_EQ(entries(), std::vector<std::string>{"9e0000 1 doGesture:triggerEvent:"});
    EXPECT_EQ(*VelmoraGestureSize, 400);
    EXPECT_EQ(*VelmoraGestureTimeout, 700);
    EXPECT_FALSE(*VelmoraGestureMakesKey);
    EXPECT_FALSE(*VelmoraGesturesDrawFeedback);

    const auto written = dictionaryWithContentsOfFile(host.files(), host.settingsFile(fileName));
    ASSERT_TRUE(written);
    EXPECT_EQ(written->count(), 35U);
    EXPECT_EQ(*written->objectForKey("modifiers1"), PropertyList(0x7F)) << "kept as it was set";
    EXPECT_EQ(*written->objectForKey("mouseButton0"), PropertyList(-1));
    EXPECT_EQ(*written->objectForKey("isEnabled1"), PropertyList(true));
    EXPECT_EQ(*written->objectForKey("flavor"), PropertyList(33.25));

    const auto again = makeDefaults();
    EXPECT_EQ(again->gestureSize(), 20);
    EXPECT_EQ(again->flavor(), 33.25);
    EXPECT_EQ(again->modifierForIndex(1), 0x7FU);
}

TEST(VelmoraDefaultsTest, AFileIsReadAgainOnlyWhenItsDateDiffers) {
    HeadlessHost host;
    const std::string path = host.settingsFile(fileName);
    host.writeSettings(fileName, "{ gestureSize=10; }");
    host.files().memory().setModificationDate(path, NSDate{1});
    const auto defaults = makeDefaults();
    EXPECT_FALSE(defaults->readDefaults());

    host.writeSettings(fileName, "{ gestureSize=12; }");
    host.files().memory().setModificationDate(path, NSDate{2});
    defaults->checkDefaults();
    EXPECT_EQ(*VelmoraGestureSize, 144);

    // What cannot be parsed counts as read and changes nothing; it is not tried again.
    host.writeSettings(fileName, "{ gestureSize=");
    host.files().memory().setModificationDate(path, NSDate{3});
    EXPECT_TRUE(defaults->readDefaults());
    EXPECT_FALSE(defaults->readDefaults());
    EXPECT_EQ(defaults->gestureSize(), 12);
}

TEST(VelmoraDefaultsTest, WhatCannotBeReadForAReasonThatMayPassIsReadTheNextTime) {
    HeadlessHost host;
    const std::string path = host.settingsFile(fileName);
    host.writeSettings(fileName, "{ gestureSize=10; }");
    host.files().setReadFails(path, true);
    const auto defaults = makeDefaults();
    EXPECT_EQ(defaults->gestureSize(), 15);
    EXPECT_EQ(host.log(),
              std::vector<std::string>{"Cannot read '" + path + "' now: Input/output error"});
    host.files().setReadFails(path, false);
    defaults->checkDefaults();
    EXPECT_EQ(*VelmoraGestureSize, 100);

    // What its mode forbids to be read is as bad as broken, and silent.
    host.writeSettings(fileName, "{ gestureSize=20; }");
    host.files().setReadForbidden(path, true);
    EXPECT_TRUE(defaults->readDefaults());
    EXPECT_FALSE(defaults->readDefaults());
    EXPECT_EQ(defaults->gestureSize(), 10);
    EXPECT_EQ(host.log().size(), 1U);
}

TEST(VelmoraDefaultsTest, TheWritesOfOneClickReadNothingAndWaitForTheDiskOnce) {
    HeadlessHost host;
    const std::string path = host.settingsFile(fileName);
    host.writeSettings(fileName, "{ gestureSize=10; }");
    const auto defaults = makeDefaults();
    const int reads = host.files().readsOf(path);
    for (int i = 0; i < VelmoraSlotCount; ++i) defaults->setModifier_forIndex(8, i);
    EXPECT_EQ(host.files().waitsFor(path), 0);
    host.advance(1);
    EXPECT_EQ(host.files().waitsFor(path), 1);
    EXPECT_EQ(host.files().readsOf(path), reads);
    const FileHistory history(host.files(), path);
    ASSERT_EQ(history.versions().size(), 1U);
    EXPECT_EQ(host.files().contentsOfFile(history.pathOf(history.versions()[0])),
              "{ gestureSize=10; }");

    defaults->setGestureSize(20);
    host.advance(1);
    EXPECT_EQ(host.files().readsOf(path), reads);
    EXPECT_EQ(history.versions().size(), 2U);
    EXPECT_EQ(host.files().waitsFor(path), 2);
}

TEST(VelmoraDefaultsTest, AFailedWriteStillTakesEffect) {
    HeadlessHost host;
    const auto defaults = makeDefaults();
    host.files().setWriteFails(host.settingsFile(fileName), true);
    defaults->setGestureSize(30);
    EXPECT_EQ(*VelmoraGestureSize, 900);
}

TEST(VelmoraDefaultsTest, AnIndexOutsideTheSlotsTouchesNone) {
    HeadlessHost host;
    const auto defaults = makeDefaults();
    for (const int index : {-1, 10, 1 << 30}) {
        defaults->setMouseButton_forIndex(3, index);
        defaults->setModifier_forIndex(3, index);
        defaults->setEnabled_forIndex(true, index);
        EXPECT_EQ(defaults->mouseButtonForIndex(index), -1);
        EXPECT_EQ(defaults->modifierForIndex(index), 0U);
        EXPECT_FALSE(defaults->isEnabledForIndex(index));
    }
    for (int i = 0; i < VelmoraSlotCount; ++i) EXPECT_EQ(defaults->mouseButtonForIndex(i), -1);
}

TEST(VelmoraDefaultsTest, TheMouseHandlingBeginsWithTheTablesOfTheFileAndTheTraceFollowsTheHue) {
    HeadlessHost host;
    host.writeSettings(fileName, "{ isEnabled0=YES; mouseButton0=1; flavor=\"12.5\"; }");
    std::vector<std::string> calls;
    auto defaults = std::make_shared<VelmoraDefaults>(VelmoraDefaults::Callbacks{
        [&] { calls.push_back("activate with " + std::to_string(entries().size())); },
        [&](double hue) { calls.push_back("hue " + std::to_string(hue)); }});
    defaults->initForMenuItem(nullptr);
    defaults->setFlavor(40);
    EXPECT_EQ(calls,
              (std::vector<std::string>{"hue 12.500000", "activate with 1", "hue 40.000000"}));
}

TEST(VelmoraDefaultsTest, TheSuitesMenuItemShowsThePictureInTheHue) {
    HeadlessHost host;
    const auto item = std::make_shared<NSMenuItem>("Velmora", Selector(), "");
    auto defaults = std::make_shared<VelmoraDefaults>(VelmoraDefaults::Callbacks());
    defaults->initForMenuItem(item);
    ASSERT_TRUE(item->image());
    const Bitmap red = item->image()->bitmap();
    defaults->setFlavor(40);
    EXPECT_NE(item->image()->bitmap(), red);
}

}  // namespace
}  // namespace velmora
