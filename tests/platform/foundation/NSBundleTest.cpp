#include "platform/foundation/NSBundle.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <set>

#include "platform/foundation/files/OldStylePropertyList.h"
#include "platform/port/FileSystem.h"
#include "support/HeadlessHost.h"
#include "support/TemporaryFolder.h"

namespace velmora {
namespace {

namespace fs = std::filesystem;

using testing::ElementsAre;
using testing::Eq;
using testing::IsEmpty;
using testing::Optional;

class NSBundleTest : public testing::Test {
protected:
    void put(const std::string& name, const std::string& contents) {
        fs::create_directories(fs::path(folder_.path(name)).parent_path());
        std::ofstream(folder_.path(name)) << contents;
    }

    /// What "Hello" is in that order of languages.
    std::string hello(std::vector<std::string> languages) {
        const NSBundle bundle(folder_.path(), std::move(languages));
        return bundle.localizedStringForKey_value_table("Hello");
    }

    HeadlessHost host_;
    TemporaryFolder folder_;
};

TEST_F(NSBundleTest, TheFirstLanguageWithATableServes) {
    put("de.lproj/Localizable.strings", R"("Hello" = "Hallo";)");
    put("de_AT.lproj/Localizable.strings", "Hello = Servus;");
    put("fr.lproj/Localizable.strings", "Hello = Bonjour;");
    const struct {
        std::vector<std::string> languages;
        std::string text;
    } rows[] = {
        {{"de"}, "Hallo"},
        {{"de_DE"}, "Hallo"},
        {{"de-CH"}, "Hallo"},
        {{"de_AT"}, "Servus"},
        {{"it", "pt_BR", "fr_CA", "de"}, "Bonjour"},
        {{"en", "de"}, "Hello"},
        {{"en_GB", "de"}, "Hello"},
        {{"it", "en", "de"}, "Hello"},
        {{"it"}, "Hello"},
        {{"d", "", "_"}, "Hello"},
        {{}, "Hello"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(hello(row.languages), row.text) << testing::PrintToString(row.languages);
    }
    EXPECT_THAT(host_.log(), IsEmpty());
}

TEST_F(NSBundleTest, EnglishMayHaveATableToo) {
    put("en_GB.lproj/Localizable.strings", "Hello = \"Good day\";");
    EXPECT_EQ(hello({"en_GB", "de"}), "Good day");
    EXPECT_EQ(hello({"en_US", "de"}), "Hello");
}

TEST_F(NSBundleTest, ABrokenTableIsPassedOverAndItsPlaceIsLogged) {
    put("de.lproj/Localizable.strings", "\"Hello\" = \"Hallo\";\n\"b\" \"c\";");
    put("it.lproj/Localizable.strings", "(Hello)");
    put("fr.lproj/Localizable.strings", "Hello = Bonjour;");
    const NSBundle bundle(folder_.path(), {"de", "it", "fr"});
    EXPECT_EQ(bundle.localizedStringForKey_value_table("Hello"), "Bonjour");
    EXPECT_EQ(bundle.localizedStringForKey_value_table("Hello"), "Bonjour");
    EXPECT_THAT(
        host_.log(),
        ElementsAre(folder_.path("de.lproj/Localizable.strings:2:5: a '=' or ';' is missing"),
                    folder_.path("it.lproj/Localizable.strings:1:1: this is no table")));
}

TEST_F(NSBundleTest, AMissingTextIsItsKeyOrTheGivenValue) {
    put("de.lproj/Localizable.strings", "Hello = Hallo; Empty = \"\"; List = (a);");
    put("de.lproj/Other.strings", "Hello = Moin;");
    const NSBundle bundle(folder_.path(), {"de"});
    EXPECT_EQ(bundle.localizedStringForKey_value_table("Bye"), "Bye");
    EXPECT_EQ(bundle.localizedStringForKey_value_table("Bye", "So long"), "So long");
    EXPECT_EQ(bundle.localizedStringForKey_value_table("Hello", "So long"), "Hallo");
    EXPECT_EQ(bundle.localizedStringForKey_value_table("Empty"), "");
    EXPECT_EQ(bundle.localizedStringForKey_value_table("List"), "List");
    EXPECT_EQ(bundle.localizedStringForKey_value_table("Hello", "", "Other"), "Moin");
    EXPECT_EQ(bundle.localizedStringForKey_value_table("Hello", "", "None"), "Hello");
}

TEST_F(NSBundleTest, ResourcesAreFoundByNameAndType) {
    put("Manual/index.html", "");
    put("images/vm.png", "");
    const NSBundle bundle(folder_.path(), {});
    EXPECT_THAT(bundle.pathForResource_ofType("Manual", ""), Optional(folder_.path() + "/Manual"));
    EXPECT_THAT(bundle.pathForResource_ofType("Manual/index", "html"),
                Optional(folder_.path() + "/Manual/index.html"));
    EXPECT_THAT(bundle.pathForResource_ofType("Manual", "html"), Eq(std::nullopt));
    EXPECT_THAT(bundle.pathForImageResource("vm"), Optional(folder_.path() + "/images/vm.png"));
    EXPECT_THAT(bundle.pathForImageResource("vmx"), Eq(std::nullopt));
}

TEST_F(NSBundleTest, AResourceOfTheUsersLanguageComesFirst) {
    put("Manual/index.html", "");
    put("de.lproj/Manual/index.html", "");
    const std::string english = folder_.path() + "/Manual";
    const std::string german = folder_.path() + "/de.lproj/Manual";
    for (const auto& [languages, path] :
         std::vector<std::pair<std::vector<std::string>, std::string>>{{{"de"}, german},
                                                                       {{"fr", "de_AT"}, german},
                                                                       {{"en_GB", "de"}, english},
                                                                       {{"fr"}, english},
                                                                       {{}, english}}) {
        EXPECT_THAT(NSBundle(folder_.path(), languages).pathForResource_ofType("Manual", ""),
                    Optional(path));
    }
}

TEST_F(NSBundleTest, TheSystemsOwnBundleSpeaksTheUsersLanguage) {
    EXPECT_EQ(localized("Velmora Help"), "Velmora Help");
    HostDescription german;
    german.processName = "Bearbeiter";
    german.languages = {"de_DE", "en"};
    const HeadlessHost other(german);
    EXPECT_EQ(localized("Velmora Help"), "Velmora-Hilfe");
    EXPECT_TRUE(NSBundle::bundleForClass().pathForImageResource("vm"));
}

std::string contents(const fs::path& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// What a page refers to: the values of its attributes href and src, other sites left out.
std::vector<std::string> linksOf(const std::string& page) {
    static const std::regex link("(?:href|src)=\"([^\"]+)\"");
    std::vector<std::string> links;
    for (std::sregex_iterator at(page.begin(), page.end(), link), end; at != end; ++at) {
        links.push_back((*at)[1]);
    }
    return links;
}

TEST(ManualTest, EveryLanguageHasTheSamePagesAndNoLinkLeadsNowhere) {
    const fs::path resources = VELMORA_SOURCE_DIR "/resources";
    std::set<std::string> pages;
    for (const auto& entry : fs::directory_iterator(resources / "Manual")) {
        if (entry.path().extension() == ".html") pages.insert(entry.path().filename());
    }
    EXPECT_GE(pages.size(), 8U);
    for (const char* folder : {"Manual", "de.lproj/Manual"}) {
        for (const std::string& name : pages) {
            const std::string page = contents(resources / folder / name);
            const std::string english = contents(resources / "Manual" / name);
            EXPECT_NE(page, "") << folder << '/' << name;
            EXPECT_EQ(linksOf(page).size(), linksOf(english).size()) << folder << '/' << name;
            for (const std::string& link : linksOf(page)) {
                const auto mark = link.find('#');
                const fs::path target = resources / folder / link.substr(0, mark);
                EXPECT_TRUE(fs::is_regular_file(target)) << folder << '/' << name << ": " << link;
                if (mark == std::string::npos) continue;
                const std::string place = "id=\"" + link.substr(mark + 1) + '"';
                EXPECT_NE(contents(target).find(place), std::string::npos) << name << ": " << link;
            }
        }
    }
}

/// The keys of a table among the resources.
std::vector<std::string> keysOf(const std::string& language) {
    const std::string path =
        VELMORA_SOURCE_DIR "/resources/" + language + ".lproj/Localizable.strings";
    PropertyListError error;
    const auto table = propertyListFromOldStyleText(
        NSBundle::resourceFiles().contentsOfFile(path).value_or("("), &error);
    EXPECT_TRUE(table && table->dictionary()) << path << ":" << error.line << ": " << error.reason;
    std::vector<std::string> keys;
    if (!table || !table->dictionary()) return keys;
    for (const auto& [key, text] : table->dictionary()->entries()) keys.push_back(key);
    return keys;
}

TEST_F(NSBundleTest, EveryTableHasTheSameTexts) {
    EXPECT_THAT(keysOf("de"), testing::UnorderedElementsAreArray(keysOf("en")));
}

}  // namespace
}  // namespace velmora
