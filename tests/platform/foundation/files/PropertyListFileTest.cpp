#include "platform/foundation/files/PropertyListFile.h"

#include <gmock/gmock.h>

#include <clocale>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>

#include "platform/headless/MemoryFileSystem.h"
#include "support/BinaryPropertyList.h"
#include "support/TemporaryFolder.h"

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::Eq;
using testing::IsEmpty;
using testing::Optional;

using namespace std::string_literals;

NSDictionary dictionaryOf(std::vector<NSDictionary::Entry> entries) {
    NSDictionary dictionary;
    for (auto& [key, value] : entries) dictionary.append(key, value);
    return dictionary;
}

std::string document(const std::string& element) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n" + element +
           "\n</plist>\n";
}

std::string utf16(const std::string& ascii) {
    std::string bytes = "\xFF\xFE";
    for (const char c : ascii) bytes += {c, '\0'};
    return bytes;
}

TEST(PropertyListFileTest, EveryEncodingIsRecognised) {
    const NSArray value{"a", "b"};
    const std::string xml = "<array><string>a</string><string>b</string></array>";
    const std::string rows[] = {
        xml,
        document(xml),
        " \r\n\t" + document(xml),
        "\xEF\xBB\xBF" + document(xml),
        utf16(document(xml)),
        "<!-- by hand -->\n" + xml,
        R"(<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://x">)" + xml,
        binaryPropertyList({"\xA2\x01\x02", binaryText("a"), binaryText("b")}),
        "(a, b)",
        "  ( \"a\", /* and */ b )\n",
        utf16("(a, b)"),
    };
    for (const std::string& bytes : rows) {
        EXPECT_THAT(propertyListFromData(bytes), Optional(PropertyList(value))) << bytes;
    }
    EXPECT_THAT(propertyListFromData("<0d0a>"), Optional(PropertyList(PropertyList::Data{"\r\n"})));
    EXPECT_THAT(propertyListFromData("a = b;"), Optional(PropertyList(dictionaryOf({{"a", "b"}}))));
}

TEST(PropertyListFileTest, WhatIsNoPropertyListIsRefused) {
    const std::string rows[] = {
        "",
        " \n\t ",
        "\xEF\xBB\xBF",
        "<",
        "< ",
        R"(<?xml version="1.0"?>)",
        "<html><body/></html>",
        "<array><string>a</array></string>",
        "<array><string>a & b</string></array>",
        "<array><string>&unknown;</string></array>",
        "<array><dict><string>no key</string></dict></array>",
        "<array>text</array>",
        "\xFF\xFE<",
        "two words",
        "\x7F\x45LF\x02\x01\x01",
        std::string(1000, '\0'),
        document("<string>a\0b</string>"s),
        document("<string>a&#0;<![CDATA[&#0;]]></string>"),
        "bplist",
        "bplist01" + binaryPropertyList({"\x08"}).substr(8),
        binaryPropertyList({"\xA1\x01", "\x00"s}),
        binaryPropertyList(
            {"\xD1\x01\x02", "\x10\x05", binaryText("v")}),         // a key that is a number
        binaryPropertyList({"\xD1\x01\x01", binaryText("a\0b"s)}),  // the character 0 in a key
        R"({"json": [1, 2]})",
    };
    for (const std::string& bytes : rows) {
        EXPECT_THAT(propertyListFromData(bytes), Eq(std::nullopt)) << bytes;
    }
}

TEST(PropertyListFileTest, AFileThatIsCutOffIsRefused) {
    const std::string xml = xmlDataFromPropertyList(
        dictionaryOf({{"gestureSize", 15}, {"list", NSArray{"a", true, PropertyList::Data{"x"}}}}));
    const std::string binary =
        binaryPropertyList({"\xD1\x01\x02", binaryText("k"), binaryText("v")});
    const std::string text = R"({ a = (b, <00>); "c" = "d"; })";
    // Only the last line's end may be missing.
    for (const std::string& whole : {xml.substr(0, xml.size() - 1), binary, text}) {
        ASSERT_TRUE(propertyListFromData(whole));
        for (std::size_t size = 0; size < whole.size(); ++size) {
            const auto read = propertyListFromData(whole.substr(0, size));
            // A single bare word is a text of the old form.
            EXPECT_TRUE(!read || read->string()) << whole.substr(0, size);
        }
    }
}

TEST(PropertyListFileTest, ValuesOfEveryKindComeBackFromXMLAsTheyWere) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    std::string references;
    for (int i = 0; i < 30'000; ++i) references += "<&> ";
    PropertyList deep = 1;
    for (int i = 0; i < 200; ++i) deep = NSArray{deep};
    const PropertyList rows[] = {
        "",
        "  two blanks at both ends  ",
        "a\x01\x1F\x7F\t\r\n\r",
        "]]> <!-- --> <![CDATA[ &amp; &#x41; \" '",
        "\xC3\xA4 \xE2\x82\xAC \xF0\x9F\x98\x80 \xFF\xC3",
        "&",
        references,
        "\xC3\xA4" + std::string(50'000, 'y') + references,
        true,
        false,
        0,
        -1,
        std::numeric_limits<std::int64_t>::min(),
        std::numeric_limits<std::int64_t>::max(),
        0.0,
        0.1,
        -59.999999999999993,
        1e21,
        std::numeric_limits<double>::denorm_min(),
        std::numeric_limits<double>::max(),
        -infinity,
        PropertyList::Date{0},
        PropertyList::Date{-978307201},    // before 1970
        PropertyList::Date{-3187296000},   // 1900
        PropertyList::Date{63113904000},   // 4001
        PropertyList::Date{-63113904000},  // 1
        PropertyList::Date{252423993599},  // the last second of 9999
        PropertyList::Data{},
        PropertyList::Data{"\0\x01\xFF"s},
        PropertyList::Data{std::string(1000, 'x')},
        "a\0b\0"s,
        NSArray{"\0"s, "&#0;", "fdd0", "\xEF\xB7\x91", dictionaryOf({{"a\0b"s, "\0\0"s}})},
        NSArray{},
        NSDictionary(),
        deep,
        dictionaryOf({{"", 1}, {"<&>", NSArray{NSDictionary(), NSArray{}}}, {"CF$UID", 5}}),
    };
    for (const PropertyList& value : rows) {
        const std::string xml = xmlDataFromPropertyList(NSArray{value});
        EXPECT_THAT(propertyListFromData(xml), Optional(PropertyList(NSArray{value}))) << xml;
    }
}

TEST(PropertyListFileTest, WhatXMLCannotHoldIsWrittenAsNearAsItGoes) {
    const struct {
        PropertyList written;
        PropertyList read;
    } rows[] = {
        {PropertyList::Date{1.75}, PropertyList::Date{1}},
        {PropertyList::Date{-1.25}, PropertyList::Date{-2}},
        {PropertyList::Date{1e300}, PropertyList::Date{252423993599}},
        {PropertyList::Date{-1e300}, PropertyList::Date{-63113904000}},
        {PropertyList::Date{std::nan("")}, PropertyList::Date{0}},
    };
    for (const auto& row : rows) {
        EXPECT_THAT(propertyListFromData(xmlDataFromPropertyList(row.written)), Optional(row.read));
    }
    const auto notANumber = propertyListFromData(xmlDataFromPropertyList(std::nan("")));
    ASSERT_TRUE(notANumber && notANumber->real());
    EXPECT_TRUE(std::isnan(*notANumber->real()));
}

TEST(PropertyListFileTest, TheXMLFormIsTheOneThatOthersRead) {
    const NSArray definitions{dictionaryOf(
        {{"Path", "File/Close & Go"}, {"Trigger", ""}, {"isGlobal", true}, {"size", 15}})};
    EXPECT_EQ(xmlDataFromPropertyList(definitions),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
              "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
              "<plist version=\"1.0\">\n"
              "<array>\n"
              "\t<dict>\n"
              "\t\t<key>Path</key>\n"
              "\t\t<string>File/Close &amp; Go</string>\n"
              "\t\t<key>Trigger</key>\n"
              "\t\t<string></string>\n"
              "\t\t<key>isGlobal</key>\n"
              "\t\t<true/>\n"
              "\t\t<key>size</key>\n"
              "\t\t<integer>15</integer>\n"
              "\t</dict>\n"
              "</array>\n"
              "</plist>\n");
}

TEST(PropertyListFileTest, UnusualValuesAreReadAsDescribed) {
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    const struct {
        std::string bytes;
        PropertyList value;
    } rows[] = {
        {"<integer>18446744073709551615</integer>", most},
        {"<integer>9223372036854775808</integer>", most},
        {"<integer>999999999999999999999999999</integer>", most},
        {"<integer> -5 </integer>", -5},
        {"<integer/>", 0},
        {"<string>a<!-- b -->c<![CDATA[<&>]]>&#xE4;&#228;</string>", "ac<&>\xC3\xA4\xC3\xA4"},
        {"<dict><key>a</key><true/><key>a</key><false/></dict>", dictionaryOf({{"a", false}})},
        {binaryPropertyList({"\x13\x80\0\0\0\0\0\0\0"s}), std::numeric_limits<std::int64_t>::min()},
        {binaryPropertyList({"\x14\0\0\0\0\0\0\0\0\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"s}), most},
        {binaryPropertyList({"\x13\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"}), -1},
        {binaryPropertyList({"\x22\x3F\xC0\0\0"s}), 1.5},
        {binaryPropertyList({"\x33\x41\xC2\0\0\x00\xC0\0\0"s}), PropertyList::Date{603979777.5}},
        {binaryPropertyList({"\xA1\x01", "\x81\x01\x02"}),
         NSArray{dictionaryOf({{"CF$UID", 258}})}},
        {binaryPropertyList({"\xA1\x01", "\x63\xD8\x3D\xDE\x00\0b"s}),
         NSArray{"\xF0\x9F\x98\x80\x62"}},
        {binaryPropertyList(
             {"\xD3\x01\x02\x01\x03\x03\x02"s, binaryText("a"), binaryText("b"), "\x08"}),
         dictionaryOf({{"a", "b"}, {"b", false}})},
    };
    for (const auto& row : rows) {
        EXPECT_THAT(propertyListFromData(row.bytes), Optional(row.value)) << row.bytes;
    }
}

/// A host in a locale with a decimal comma, for the life of the object.
class CommaLocale {
public:
    CommaLocale() {
        // What localedef makes of de_DE's rules for numbers.
        constexpr std::string_view numeric(
            "\x14\x11\x03\x20\x06\0\0\0\x20\0\0\0\x22\0\0\0\x24\0\0\0\x28\0\0\0\x2c\0\0\0\x30\0\0\0"
            "\x2c\0\x2e\0\x03\x03\0\0\x2c\0\0\0\x2e\0\0\0UTF-8\0",
            54);
        std::filesystem::create_directory(folder_.path("comma"));
        std::ofstream(folder_.path("comma/LC_NUMERIC"), std::ios::binary) << numeric;
        ::setenv("LOCPATH", folder_.path().c_str(), 1);
        std::setlocale(LC_NUMERIC, "comma");
        ::unsetenv("LOCPATH");
    }
    ~CommaLocale() { std::setlocale(LC_NUMERIC, "C"); }
    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;

private:
    TemporaryFolder folder_;
};

TEST(PropertyListFileTest, RealsDoNotDependOnTheHostsLocale) {
    const CommaLocale comma;
    ASSERT_EQ(std::strtod("2,5", nullptr), 2.5);
    EXPECT_THAT(propertyListFromData("<real>15.5</real>"), Optional(PropertyList(15.5)));
    EXPECT_THAT(xmlDataFromPropertyList(15.5), testing::HasSubstr("<real>15.5</real>"));
    EXPECT_THAT(PropertyList("15.5").doubleValue(), Optional(15.5));
    EXPECT_EQ(std::strtod("2,5", nullptr), 2.5);
}

TEST(PropertyListFileTest, AFileHasOneKindOfRoot) {
    MemoryFileSystem files;
    const std::pair<const char*, const char*> contents[] = {{"/dictionary", "{a = b;}"},
                                                            {"/array", "(a)"},
                                                            {"/string", "a"},
                                                            {"/empty", ""},
                                                            {"/broken", "{a"}};
    for (const auto& [path, text] : contents) files.writeAtomically(path, text);
    EXPECT_THAT(dictionaryWithContentsOfFile(files, "/dictionary"),
                Optional(dictionaryOf({{"a", "b"}})));
    for (const char* path : {"/array", "/string", "/empty", "/broken", "/none", "/"}) {
        EXPECT_THAT(dictionaryWithContentsOfFile(files, path), Eq(std::nullopt)) << path;
    }
}

}  // namespace
}  // namespace velmora
