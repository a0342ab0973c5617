#include "definitions/VelmoraSettings.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "definitions/VelmoraSettingsDirectory.h"
#include "platform/foundation/files/PropertyListFile.h"
#include "support/HeadlessHost.h"

namespace velmora {
namespace {

/// Records by their triggers; a capital one is global.
VelmoraSettings& fill(VelmoraSettings& list, const std::string& triggers) {
    list.initWithContentsOfFile_forceGlobal(std::nullopt, false);
    for (const char c : triggers) {
        list.addObject();
        const VelmoraSettingRef record = list.array().back();
        record->setTrigger(std::string(1, c));
        record->setIsGlobal(c >= 'A' && c <= 'Z');
    }
    list.setGlobalChanged(false);
    return list;
}

std::string triggersOf(VelmoraSettings& list) {
    std::string triggers;
    for (const VelmoraSettingRef& record : list.array()) triggers += record->trigger();
    return triggers;
}

TEST(VelmoraSettingsTest, ReadsOnlyTheDictionariesOfAnArray) {
    struct Row {
        const char* contents;
        const char* triggers;
    };
    const std::vector<Row> rows{
        {"( { Trigger = a; }, { Trigger = b; } )", "ab"},
        {"( { Trigger = a; }, word, ( b ), { Trigger = c; Extra = d; } )", "ac"},
        {"()", ""},
        {"{ Trigger = a; }", ""},
        {"( { Trigger = a; }", ""},
        {"", ""},
        {"\xFF\xFE\x01garbage", ""},
    };
    for (const bool forced : {false, true}) {
        for (const Row& row : rows) {
            HeadlessHost host;
            host.writeSettings("List.plist", row.contents);
            VelmoraSettings list;
            list.initWithContentsOfFile_forceGlobal(host.settingsFile("List.plist"), forced);
            EXPECT_EQ(triggersOf(list), row.triggers) << row.contents;
            EXPECT_FALSE(list.globalChanged());
            EXPECT_TRUE(host.log().empty()) << row.contents;
            for (const auto& record : list.array()) EXPECT_EQ(record->isGlobal(), forced);
        }
    }
}

TEST(VelmoraSettingsTest, TheSharedFileGetsTheGlobalRecordsOnly) {
    HeadlessHost host;
    ASSERT_EQ(settingsDirectory() + "/List.plist", host.settingsFile("List.plist"));
    VelmoraSettings list;
    fill(list, "aBc");
    for (const bool globalOnly : {false, true}) {
        const std::string file = host.settingsFile("List.plist");
        list.saveSettingsWithGlobalFlag_toFile(globalOnly, file);
        VelmoraSettings read;
        read.initWithContentsOfFile_forceGlobal(file, false);
        EXPECT_EQ(triggersOf(read), globalOnly ? "B" : "aBc");
        EXPECT_EQ(read.count() > 0 && read.array().back()->isGlobal(), globalOnly);
    }
    fill(list, "").saveSettingsWithGlobalFlag_toFile(false, host.settingsFile("Empty.plist"));
    EXPECT_EQ(propertyListFromData(host.readSettings("Empty.plist").value()), NSArray());
}

TEST(VelmoraSettingsTest, AFailedWriteIsALineInTheLogAndChangesNothing) {
    HeadlessHost host;
    const std::string file = host.settingsFile("List.plist");
    host.writeSettings("List.plist", "( { Trigger = old; } )");
    host.files().setWriteFails(file, true);
    VelmoraSettings list;
    fill(list, "aB").setGlobalChanged(true);
    list.createBackup();
    list.saveSettingsWithGlobalFlag_toFile(false, file);
    EXPECT_EQ(host.log(), std::vector<std::string>{"Failed to write '" + file + "'!"});
    EXPECT_EQ(host.readSettings("List.plist"), "( { Trigger = old; } )");
    EXPECT_EQ(triggersOf(list), "aB");
    EXPECT_TRUE(list.globalChanged());
    EXPECT_TRUE(list.revert());
}

TEST(VelmoraSettingsTest, RevertBringsBackTheRowsThatWereDeletedAndEdited) {
    VelmoraSettings list;
    fill(list, "aBc").createBackup();
    list.objectAtIndex(0)->setTrigger("x");
    list.removeObjectAtIndex(1);
    EXPECT_TRUE(list.globalChanged());
    EXPECT_TRUE(list.revert());
    EXPECT_EQ(triggersOf(list), "aBc");
    EXPECT_FALSE(list.globalChanged());
    EXPECT_FALSE(list.revert()) << "the backup is used up";

    list.createBackup();
    list.removeObjectAtIndex(0);
    list.deleteBackup();
    EXPECT_FALSE(list.revert());
    EXPECT_EQ(triggersOf(list), "Bc");
}

TEST(VelmoraSettingsTest, OnlyEditsOfGlobalRecordsTouchTheSharedSet) {
    const PropertyList value = "z";
    VelmoraSettings list;
    fill(list, "aB").setObject_forKey_atIndex(&value, "Path", 0);
    list.removeObject(*list.objectAtIndex(0));
    EXPECT_FALSE(list.globalChanged());
    list.setObject_forKey_atIndex(&value, "Path", 0);
    EXPECT_TRUE(list.globalChanged());
    fill(list, "aB").removeObject(*list.objectAtIndex(1));
    EXPECT_TRUE(list.globalChanged());
    EXPECT_EQ(triggersOf(list), "a");
}

TEST(VelmoraSettingsTest, RecordsAreRemovedAsThatObjectAndFoundByContent) {
    VelmoraSettings list;
    fill(list, "aab");
    const VelmoraSettingRef second = list.objectAtIndex(1);
    EXPECT_EQ(list.objectEqualTo(*second), list.objectAtIndex(0));
    list.removeObject(*second);
    EXPECT_EQ(triggersOf(list), "ab");
    EXPECT_NE(list.objectAtIndex(0), second);
    fill(list, "ABABA").removeObjectsWhere([](const VelmoraSetting& record) {
        return record.trigger() == "A";
    });
    EXPECT_EQ(triggersOf(list), "BB");
    EXPECT_TRUE(list.globalChanged());
}

TEST(VelmoraSettingsTest, AnIndexOutsideTheListIsNoRecord) {
    VelmoraSettings list;
    fill(list, "a");
    for (const std::int64_t index : {-1L, 1L, 1L << 40}) {
        EXPECT_EQ(list.objectAtIndex(index), nullptr);
        list.removeObjectAtIndex(index);
    }
    EXPECT_EQ(triggersOf(list), "a");
}

}  // namespace
}  // namespace velmora
