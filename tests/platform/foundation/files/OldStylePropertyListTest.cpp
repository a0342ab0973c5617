#include "platform/foundation/files/OldStylePropertyList.h"

#include <gmock/gmock.h>

#include "platform/foundation/files/PropertyListGuard.h"

namespace velmora {
namespace {

using testing::Eq;
using testing::Optional;

using namespace std::string_literals;

NSDictionary dictionaryOf(std::vector<NSDictionary::Entry> entries) {
    NSDictionary dictionary;
    for (auto& [key, value] : entries) dictionary.append(key, value);
    return dictionary;
}

std::string utf16(std::u16string_view text, bool bigEndian) {
    std::string bytes;
    for (const char16_t unit : text) {
        const char low = static_cast<char>(unit & 0xFFU);
        const char high = static_cast<char>(unit >> 8U);
        bytes += {bigEndian ? high : low, bigEndian ? low : high};
    }
    return bytes;
}

TEST(OldStylePropertyListTest, TextsOfEveryKindAreRead) {
    const struct {
        std::string text;
        PropertyList value;
    } rows[] = {
        {"word", "word"},
        {" http://x.y/z-1_$+ // a comment", "http://x.y/z-1_$+"},
        {"word/* directly behind it */", "word"},
        {R"("quoted \"text\" with 'quotes'")", "quoted \"text\" with 'quotes'"},
        {R"('it "is" \'so\'')", "it \"is\" 'so'"},
        {R"("\a\b\f\n\r\t\v\\\x")", "\a\b\f\n\r\t\v\\x"},
        {"\"two\\\nlines\"", "two\nlines"},
        {R"("\1012\12\344")", "A2\n\xC3\xA4"},
        {R"("\U00e4\U20AC\Ud83d\ude00\U41 ")", "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80\x41 "},
        {"\"\xC3\xA4 \xFF\"", "\xC3\xA4 \xFF"},
        {"()", NSArray{}},
        {"( a, (b , \"c\",), <0fbD 77> )",
         NSArray{"a", NSArray{"b", "c"}, PropertyList::Data{"\x0F\xBD\x77"}}},
        {"<>", PropertyList::Data{}},
        {"{}", NSDictionary()},
        {"{ a = 1; /* { */ \"b c\" = { d = (); }; e; }",
         dictionaryOf({{"a", "1"}, {"b c", dictionaryOf({{"d", NSArray{}}})}, {"e", "e"}})},
        {"/* texts */\n\"One\" = \"Eins\";\n\"Two\";\nThree=Drei;",
         dictionaryOf({{"One", "Eins"}, {"Two", "Two"}, {"Three", "Drei"}})},
        {"a = 1; b = 2; a = 3;", dictionaryOf({{"a", "3"}, {"b", "2"}})},
        {"", NSDictionary()},
        {" \r\n// nothing\n/* at all */", NSDictionary()},
        {"\xEF\xBB\xBF"
         "a = b;",
         dictionaryOf({{"a", "b"}})},
        {"\xFF\xFE" + utf16(u"\"\u00E4\" = \"\u20AC\U0001F600\";", false),
         dictionaryOf({{"\xC3\xA4", "\xE2\x82\xAC\xF0\x9F\x98\x80"}})},
        {"\xFE\xFF" + utf16(u"a = b;", true), dictionaryOf({{"a", "b"}})},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        PropertyListError error;
        EXPECT_THAT(propertyListFromOldStyleText(row.text, &error), Optional(row.value))
            << error.line << ":" << error.column << ": " << error.reason;
    }
}

TEST(OldStylePropertyListTest, AnErrorNamesItsPlaceAndReason) {
    const struct {
        std::string text;
        int line;
        int column;
        std::string reason;
    } rows[] = {
        {"a b", 1, 3, "there is more behind the value"},
        {"{} x", 1, 4, "there is more behind the value"},
        {"{ a = 1 }", 1, 9, "a ';' is missing"},
        {"a = 1;\nb = 2\nc = 3;", 3, 1, "a ';' is missing"},
        {R"("a" = "b")", 1, 10, "a ';' is missing"},
        {"a = ;", 1, 5, "this character needs quotes around it"},
        {"{ a }", 1, 5, "a '=' or ';' is missing"},
        {"{ a = ", 1, 7, "a value is missing"},
        {"{ a = b;", 1, 1, "the dictionary has no '}'"},
        {"a = b; }", 1, 8, "there is more behind the table"},
        {"\n (a", 2, 2, "the array has no ')'"},
        {"(a b)", 1, 4, "a ',' or ')' is missing"},
        {"(a,,b)", 1, 4, "this character needs quotes around it"},
        {"\n\n  \"abc", 3, 3, "the string has no end"},
        {"\"abc\\", 1, 5, "the string has no end"},
        {"/* abc", 1, 1, "the comment has no end"},
        {"<0f", 1, 1, "the data has no '>'"},
        {"<0f 1>", 1, 5, "data is of pairs of hexadecimal digits"},
        {"<0f xy>", 1, 5, "data is of pairs of hexadecimal digits"},
        {"caf\xC3\xA9", 1, 4, "there is more behind the value"},
        {R"("\U")", 1, 4, "\\U needs hexadecimal digits"},
        {R"("a\Ud83d")", 1, 5, "half of a surrogate pair is missing"},
        {R"("\Ude00\Ud83d")", 1, 4, "half of a surrogate pair is missing"},
        {R"("\Ud83d\U0041")", 1, 4, "half of a surrogate pair is missing"},
        {R"("\0")", 1, 2, "a text cannot hold the character 0"},
        {"\"a\0b\""s, 1, 3, "a text cannot hold the character 0"},
        {"\"\\\0\""s, 1, 3, "a text cannot hold the character 0"},
        {"\0"s, 1, 1, "this character needs quotes around it"},
        {"\xFF\xFE"
         "a",
         1, 1, "the text is broken UTF-16"},
        {"\xFE\xFF" + utf16(u"a\xD83D", true), 1, 1, "the text is broken UTF-16"},
        {"\xFE\xFF" + utf16(u"\xDE00", true) + utf16(u"a", true), 1, 1,
         "the text is broken UTF-16"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        PropertyListError error;
        EXPECT_THAT(propertyListFromOldStyleText(row.text, &error), Eq(std::nullopt));
        EXPECT_EQ(error.reason, row.reason);
        EXPECT_EQ(error.line, row.line);
        EXPECT_EQ(error.column, row.column);
    }
}

TEST(OldStylePropertyListTest, DepthValuesAndKeysAreLimited) {
    const auto nested = [](int depth) {
        return std::string(static_cast<std::size_t>(depth), '(') +
               std::string(static_cast<std::size_t>(depth), ')');
    };
    EXPECT_TRUE(propertyListFromOldStyleText(nested(PropertyListLimits::nesting)));
    PropertyListError error;
    EXPECT_FALSE(propertyListFromOldStyleText(nested(PropertyListLimits::nesting + 1), &error));
    EXPECT_EQ(error.reason, "the values are nested too deeply");
    EXPECT_FALSE(propertyListFromOldStyleText(nested(1'000'000), &error));

    std::string many = "(";
    for (std::size_t i = 0; i < PropertyListLimits::values; ++i) many += "a,";
    EXPECT_FALSE(propertyListFromOldStyleText(many + ")", &error));
    EXPECT_EQ(error.reason, "there are too many values");

    std::string keys;
    for (std::size_t i = 0; i < PropertyListLimits::keysOfOneDictionary; ++i) keys += "a;";
    EXPECT_TRUE(propertyListFromOldStyleText(keys));
    EXPECT_FALSE(propertyListFromOldStyleText(keys + "b;", &error));
    EXPECT_EQ(error.reason, "there are too many keys");
}

}  // namespace
}  // namespace velmora
