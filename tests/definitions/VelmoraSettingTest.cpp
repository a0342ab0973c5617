#include "definitions/VelmoraSetting.h"

#include <gtest/gtest.h>

#include "platform/appkit/NSMenu.h"

namespace velmora {
namespace {

NSDictionary dictionary(const char* path, const char* trigger, const char* selector, bool global) {
    NSDictionary result;
    result.append("Path", path);
    result.append("Trigger", trigger);
    result.append("Selector", selector);
    result.append("isGlobal", global);
    return result;
}

VelmoraSettingRef record(bool global) {
    return VelmoraSetting::newWithDictionary_forceGlobal(
        dictionary("File/Save", "ud", "save:", global), false);
}

TEST(VelmoraSettingTest, UnsetStringsAreWrittenAsEmptyOnes) {
    EXPECT_EQ(VelmoraSetting::newSetting()->dictionary(), dictionary("", "", "", false));
    EXPECT_EQ(VelmoraSetting::newWithDictionary_forceGlobal({}, false)->dictionary(),
              dictionary("", "", "", false));
}

TEST(VelmoraSettingTest, ReadsWhatItCanOfADictionary) {
    NSDictionary odd;
    odd.append("Path", 5);
    odd.append("Trigger", "r");
    odd.append("isGlobal", "YES");
    odd.append("Colour", "blue");
    const VelmoraSettingRef setting = VelmoraSetting::newWithDictionary_forceGlobal(odd, false);
    EXPECT_EQ(setting->dictionary(), dictionary("", "r", "", true));
}

TEST(VelmoraSettingTest, ForcingGlobalOverrulesTheDictionary) {
    EXPECT_TRUE(
        VelmoraSetting::newWithDictionary_forceGlobal(dictionary("a", "b", "c", false), true)
            ->isGlobal());
}

TEST(VelmoraSettingTest, AChangeCountsForTheSharedSetOnlyInAGlobalRecord) {
    for (const bool global : {false, true}) {
        const VelmoraSettingRef setting = record(global);
        EXPECT_FALSE(setting->setTrigger("ud")) << "the same value";
        EXPECT_EQ(setting->setTrigger("lr"), global);
        EXPECT_FALSE(setting->setTrigger("lr"));
        EXPECT_EQ(setting->setSelector(std::nullopt), global);
        EXPECT_EQ(setting->setSelector(std::nullopt), global) << "unset over unset is a change";
        EXPECT_EQ(setting->setPath(std::string("Edit/Copy")), global);
        EXPECT_EQ(setting->dictionary(), dictionary("Edit/Copy", "lr", "", global));
    }
}

TEST(VelmoraSettingTest, LeavingOrJoiningTheSharedSetIsAChange) {
    const VelmoraSettingRef setting = record(true);
    const PropertyList no = false;
    const PropertyList yes = true;
    EXPECT_TRUE(setting->setObject_forKey(&no, "isGlobal"));
    EXPECT_FALSE(setting->setObject_forKey(nullptr, "isGlobal"));
    EXPECT_TRUE(setting->setObject_forKey(&yes, "isGlobal"));
    EXPECT_FALSE(setting->setIsGlobal(true));
}

TEST(VelmoraSettingTest, FieldsAreReachedByTheirKeysAndNoOthers) {
    const VelmoraSettingRef setting = record(true);
    const PropertyList value = "x";
    for (const char* key : {"Path", "Trigger", "Selector"}) {
        EXPECT_TRUE(setting->setObject_forKey(&value, key)) << key;
        EXPECT_EQ(setting->objectForKey(key), value) << key;
        setting->setObject_forKey(nullptr, key);
        EXPECT_EQ(setting->objectForKey(key), PropertyList("")) << key;
    }
    EXPECT_FALSE(setting->setObject_forKey(&value, "path"));
    EXPECT_EQ(setting->objectForKey("path"), std::nullopt);
}

TEST(VelmoraSettingTest, EqualContentIgnoresTheScopeButNothingElse) {
    EXPECT_TRUE(record(true)->isEqualTo(*record(false)));
    const VelmoraSettingRef other = record(true);
    other->setTrigger("UD");
    EXPECT_FALSE(record(true)->isEqualTo(*other));
}

TEST(VelmoraSettingTest, AnItemOfACopiedMenuBringsPathAndSelector) {
    const auto real = NSMenuItem::initWithTitle_action_keyEquivalent(
        "Close", Selector::named("performClose:"), "w");
    const auto mirrored = NSMenuItem::initWithTitle_action_keyEquivalent("Close", Selector(), "");
    mirrored->setRepresentedObject(real);
    const VelmoraSettingRef setting = record(true);

    EXPECT_FALSE(setting->setPath(mirrored)) << "it is in no menu";
    EXPECT_EQ(setting->path(), "File/Save");

    NSMenu bar;
    const auto file = NSMenuItem::initWithTitle_action_keyEquivalent("File", Selector(), "");
    const auto fileMenu = std::make_shared<NSMenu>("File");
    file->setSubmenu(fileMenu);
    bar.addItem(file);
    fileMenu->addItem(mirrored);
    EXPECT_TRUE(setting->setObject_forKey(mirrored, "Path"));
    EXPECT_EQ(setting->path(), "File/Close");
    EXPECT_EQ(setting->selector(), "performClose:");
    EXPECT_FALSE(setting->setPath(mirrored)) << "nothing new";
}

}  // namespace
}  // namespace velmora
