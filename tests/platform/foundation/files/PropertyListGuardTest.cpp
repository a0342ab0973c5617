#include "platform/foundation/files/PropertyListGuard.h"

#include <gmock/gmock.h>

#include "support/BinaryPropertyList.h"

namespace velmora {
namespace {

using namespace std::string_literals;

bool passes(const std::string& xml) {
    std::string buffer;
    return guardedXML(xml, buffer).has_value();
}

std::string repeated(const std::string& text, std::size_t count) {
    std::string all;
    all.reserve(text.size() * count);
    for (std::size_t i = 0; i < count; ++i) all += text;
    return all;
}

TEST(PropertyListGuardTest, OneWholeElementInPlainSyntaxPasses) {
    const std::string documents[] = {
        "<plist version=\"1.0\"><array/></plist>",
        R"(<?xml version="1.0"?><!DOCTYPE plist PUBLIC "-//X//>" "http://x/[y].dtd">)"
        R"(<plist version=">"><true/></plist>)" +
            "\n"s,
        "<!-- <array> --><dict><key>a</key><string>b</string></dict><!-- > -->\n",
        "<array ><string>a<![CDATA[</array>]]><!-- <b> --></string></array\n>",
        "<string>a > b</string>",
    };
    for (const std::string& document : documents) EXPECT_TRUE(passes(document)) << document;
}

TEST(PropertyListGuardTest, WhatIsCutOffOrMoreThanOneElementIsRefused) {
    const std::string whole =
        "<?xml version=\"1.0\"?><!DOCTYPE plist PUBLIC \"a\" \"b\"><plist version=\"1.0\">"
        "<array><string>a<!--b--><![CDATA[c]]></string><true/></array></plist>";
    ASSERT_TRUE(passes(whole));
    for (std::size_t size = 0; size < whole.size(); ++size) {
        EXPECT_FALSE(passes(whole.substr(0, size))) << whole.substr(0, size);
    }
    const std::string documents[] = {
        whole + "x",
        whole + "<true/>",
        whole + "<?x?>",
        "x" + whole,
        "<true/><true/>",
        "<plist><true/><true/></plist>",
        "<array/></array>",
        "<array><plist><true/></plist></array>",
        "<plist/>",
        "<plist version=\"1.0\" /><true/>",
        "<array a=\"<\"></array>",
        "<array x></array>",
        "<array / >",
        "<array><?x?></array>",
        "<array><!DOCTYPE x></array>",
        "<!DOCTYPE x [ <!ENTITY a \"b\"> ]><true/>",
        "<!DOCTYPE x \"><array/>",
        "<![CDATA[x]]><array/>",
        "<!ELEMENT x><array/>",
        "<array>< /array>",
        "<string>a\0b</string>"s,
    };
    for (const std::string& document : documents) EXPECT_FALSE(passes(document)) << document;
}

TEST(PropertyListGuardTest, DepthAndNumberOfElementsAreLimited) {
    const auto nested = [](int depth) {
        const auto count = static_cast<std::size_t>(depth);
        return "<plist>" + repeated("<array>", count) + repeated("</array>", count) + "</plist>";
    };
    EXPECT_TRUE(passes(nested(PropertyListLimits::nesting)));
    EXPECT_FALSE(passes(nested(PropertyListLimits::nesting + 1)));
    EXPECT_FALSE(passes(repeated("<array>", 1'000'000)));

    const auto wide = [](std::size_t count) {
        return "<plist><array>" + repeated("<true/>", count - 1) + "</array></plist>";
    };
    EXPECT_TRUE(passes(wide(PropertyListLimits::values)));
    EXPECT_FALSE(passes(wide(PropertyListLimits::values + 1)));
}

TEST(PropertyListGuardTest, KeysAreLimitedInEachDictionary) {
    const auto dictionaryOf = [](std::size_t keys) {
        return "<dict>" + repeated("<key>a</key><true/>", keys) + "</dict>";
    };
    constexpr std::size_t most = PropertyListLimits::keysOfOneDictionary;
    EXPECT_TRUE(passes("<array>" + dictionaryOf(most) + dictionaryOf(most) + "</array>"));
    EXPECT_FALSE(passes("<plist><array>" + dictionaryOf(most + 1) + "</array></plist>"));
    const std::string inside = "<key>a</key>" + dictionaryOf(2);
    EXPECT_FALSE(passes("<dict>" + repeated(inside, most + 1) + "</dict>"));
}

TEST(PropertyListGuardTest, ALongTextWithReferencesIsDividedBetweenThem) {
    const std::string xml = "<array><string>" + repeated("a&#x1F600;&lt;", 10'000) +
                            "</string><string>b</string></array>";
    std::string buffer;
    const auto guarded = guardedXML(xml, buffer);
    ASSERT_TRUE(guarded);
    std::string joined;
    std::size_t longest = 0;
    for (std::size_t at = 0;;) {
        const std::size_t end = guarded->find("<!---->", at);
        joined += guarded->substr(at, end - at);
        longest = std::max(longest, std::min(end, guarded->size()) - at);
        if (end == guarded->npos) break;
        EXPECT_NE((*guarded)[end + 7], ';');
        at = end + 7;
    }
    EXPECT_EQ(joined, xml);
    EXPECT_LT(longest, 10'000U);
}

TEST(PropertyListGuardTest, BinaryListsThatStayInsideThemselvesPass) {
    const std::string lists[] = {
        binaryPropertyList({binaryObject(0x08)}),
        binaryPropertyList(
            {"\xA3\x01\x01\x02"s, binaryText("a"), "\xD1\x01\x03", binaryObject(0x23, "12345678")}),
        binaryPropertyList({"\xA2\x01\x02"s, "\x5F\x10\x14"s + "12345678901234567890",
                            "\x6F\x11\0\x02"s + "\0a\0b"s}),
        binaryPropertyList({"\xA4\x01\x02\x03\x04"s, binaryObject(0x33, "12345678"),
                            binaryObject(0x80, "a"), binaryObject(0x14, "1234567812345678"),
                            binaryObject(0x42, "ab")}),
    };
    for (const std::string& list : lists) EXPECT_TRUE(isSoundBinaryPropertyList(list));
}

TEST(PropertyListGuardTest, BinaryListsThatLeadOutOrRoundInACircleAreRefused) {
    const std::string sound = binaryPropertyList({"\xA1\x01", binaryText("ab")});
    ASSERT_TRUE(isSoundBinaryPropertyList(sound));
    for (std::size_t size = 0; size < sound.size(); ++size) {
        EXPECT_FALSE(isSoundBinaryPropertyList(sound.substr(0, size))) << size;
    }
    const auto withTrailer = [&sound](std::size_t fromEnd, char byte) {
        std::string list = sound;
        list[list.size() - fromEnd] = byte;
        return list;
    };
    const std::string lists[] = {
        withTrailer(26, 0),                        // no size of an offset
        withTrailer(26, 9),                        // too great a one
        withTrailer(25, 0),                        // no size of a reference
        withTrailer(25, 9),                        // too great a one
        withTrailer(24, 1),                        // too many objects
        withTrailer(17, 3),                        // more objects than offsets
        withTrailer(9, 2),                         // a root that is no object
        withTrailer(1, 7),                         // a table in the header
        withTrailer(1, 120),                       // a table behind the end
        withTrailer(8, '\x80'),                    // far behind it
        binaryPropertyList({"\xA1\x02", "\x08"}),  // no such object
        binaryPropertyList({"\xA1\x00"s}),         // itself
        binaryPropertyList({"\xA1\x01", "\xD1\x02\x00"s, binaryText("k")}),  // round two objects
        binaryPropertyList({"\xA5\x01", "\x08"}),                            // too few references
        binaryPropertyList({"\xD1\x01", "\x08"}),
        binaryPropertyList({"\x5F\x13\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"}),
        binaryPropertyList({"\x6F\x13\x80\0\0\0\0\0\0\x01"s + "ab"s}),  // overflows when doubled
        binaryPropertyList({"\xDF\x13\x80\0\0\0\0\0\0\x01"s + "ab"s}),
        binaryPropertyList({binaryObject(0x5F, "Qa")}),          // a length that is a text
        binaryPropertyList({"\x5F\x14"s + "1234567812345678"}),  // one of 16 bytes
        binaryPropertyList({binaryObject(0x5F)}),
        binaryPropertyList({binaryObject(0x13, "123")}),
        binaryPropertyList({"\x15"}),
        binaryPropertyList({binaryObject(0x33, "123")}),
        binaryPropertyList({binaryObject(0x32, "1234")}),
        binaryPropertyList({binaryObject(0x8F, "a")}),
        binaryPropertyList({binaryText("a\0b"s)}),  // the character 0
        binaryPropertyList({"\x63\0a\0\0\x61\0"s}),
        binaryPropertyList({"\x00"s}),  // null
        binaryPropertyList({binaryObject(0x70)}),
        binaryPropertyList({"\xF0"}),
    };
    for (std::size_t row = 0; row < std::size(lists); ++row) {
        EXPECT_FALSE(isSoundBinaryPropertyList(lists[row])) << row;
    }
}

TEST(PropertyListGuardTest, SharedPartsCountAsOftenAsTheyAreUsed) {
    // Each array holds the next one twice.
    const auto doubling = [](int levels) {
        std::vector<std::string> objects;
        for (int i = 1; i <= levels; ++i) {
            objects.push_back({'\xA2', static_cast<char>(i), static_cast<char>(i)});
        }
        objects.push_back(binaryObject(0x08));
        return binaryPropertyList(objects);
    };
    EXPECT_TRUE(isSoundBinaryPropertyList(doubling(6)));
    EXPECT_FALSE(isSoundBinaryPropertyList(doubling(9)));
    EXPECT_FALSE(isSoundBinaryPropertyList(doubling(200)));

    // A text of 60,000 bytes, 250 times.
    const std::string longText = "\x5F\x11\xEA\x60" + std::string(60'000, 'x');
    EXPECT_TRUE(isSoundBinaryPropertyList(binaryPropertyList({"\xA2\x01\x01", longText})));
    EXPECT_FALSE(isSoundBinaryPropertyList(
        binaryPropertyList({"\xAF\x10\xFA" + std::string(250, '\x01'), longText})));
}

TEST(PropertyListGuardTest, DepthOfASharedPartCountsFromWhereItHangs) {
    // The root refers to a chain of arrays, and then to a second chain that leads to the first one.
    const auto chains = [](int first, int second) {
        const auto arrayOf = [](std::vector<int> references) {
            std::string array{static_cast<char>(0xA0 + static_cast<int>(references.size()))};
            for (const int reference : references) {
                array += {static_cast<char>(reference / 256), static_cast<char>(reference % 256)};
            }
            return array;
        };
        std::vector<std::string> objects{arrayOf({1, first + 1})};
        for (int i = 1; i < first; ++i) objects.push_back(arrayOf({i + 1}));
        objects.push_back(arrayOf({}));
        for (int i = 1; i < second; ++i) objects.push_back(arrayOf({first + i + 1}));
        objects.push_back(arrayOf({1}));
        return binaryPropertyList(objects, 2);
    };
    const int most = PropertyListLimits::nesting - 1;
    EXPECT_TRUE(isSoundBinaryPropertyList(chains(200, most - 200)));
    EXPECT_FALSE(isSoundBinaryPropertyList(chains(200, most - 199)));
    EXPECT_FALSE(isSoundBinaryPropertyList(chains(most + 1, 1)));
}

}  // namespace
}  // namespace velmora
