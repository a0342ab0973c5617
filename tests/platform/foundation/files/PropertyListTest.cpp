#include "platform/foundation/files/PropertyList.h"

#include <gmock/gmock.h>

#include <limits>

namespace velmora {
namespace {

using testing::Eq;
using testing::Optional;

constexpr std::int32_t intMax = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t intMin = std::numeric_limits<std::int32_t>::min();
constexpr double doubleMax = std::numeric_limits<double>::max();

TEST(PropertyListTest, NumbersAndTextsAreReadLeniently) {
    const struct {
        PropertyList value;
        double doubleValue;
        std::int32_t intValue;
        bool boolValue;
    } rows[] = {
        {true, 1, 1, true},
        {false, 0, 0, false},
        {-7, -7, -7, true},
        {0, 0, 0, false},
        {std::int64_t{1} << 40U, 1099511627776.0, intMax, true},
        {-(std::int64_t{1} << 40U), -1099511627776.0, intMin, true},
        {2.9, 2.9, 2, true},
        {-2.9, -2.9, -2, true},
        {1e300, 1e300, intMax, true},
        {0.0, 0, 0, false},
        {"15", 15, 15, true},
        {" \t-12.5e1 px", -125, -12, true},
        {"+3", 3, 3, true},
        {"010", 10, 10, true},
        {".5", 0.5, 0, false},
        {"99999999999999999999", 1e20, intMax, true},
        {"-99999999999999999999", -1e20, intMin, true},
        {"-2147483648", -2147483648.0, intMin, true},
        {"1e999", doubleMax, 1, true},
        {"-1e999", -doubleMax, -1, true},
        {"1e-999", 0, 1, true},
        {"0.01e99999999999999999999", doubleMax, 0, false},
        {"1,5", 1, 1, true},
        {"", 0, 0, false},
        {"-", 0, 0, false},
        {"inf", 0, 0, false},
        {"0x10", 0, 0, false},
        {"YES", 0, 0, true},
        {"yes", 0, 0, true},
        {" true", 0, 0, true},
        {"-007", -7, -7, true},
        {"000", 0, 0, false},
        {"no", 0, 0, false},
        {"off", 0, 0, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.value.string() ? *row.value.string()
                                        : "number " + std::to_string(row.doubleValue));
        EXPECT_THAT(row.value.intValue(), Optional(row.intValue));
        EXPECT_THAT(row.value.doubleValue(), Optional(row.doubleValue));
        EXPECT_THAT(row.value.boolValue(), Optional(row.boolValue));
    }
}

TEST(PropertyListTest, NothingElseHasANumber) {
    const PropertyList values[] = {NSArray{1}, NSDictionary(), PropertyList::Date{1},
                                   PropertyList::Data{"1"}};
    for (const PropertyList& value : values) {
        EXPECT_THAT(value.intValue(), Eq(std::nullopt));
        EXPECT_THAT(value.doubleValue(), Eq(std::nullopt));
        EXPECT_THAT(value.boolValue(), Eq(std::nullopt));
    }
}

TEST(PropertyListTest, ADictionarySetsAKeyInItsPlaceAndAppendsANewOne) {
    NSDictionary dictionary;
    dictionary.setObject_forKey(1, "a");
    dictionary.setObject_forKey(2, "b");
    dictionary.setObject_forKey(3, "a");
    EXPECT_EQ(dictionary.entries(), (std::vector<NSDictionary::Entry>{{"a", 3}, {"b", 2}}));
    EXPECT_EQ(dictionary.objectForKey("c"), nullptr);
}

TEST(PropertyListTest, DictionariesAreEqualInWhateverOrder) {
    NSDictionary one;
    one.append("a", 1);
    one.append("b", NSArray{"x"});
    NSDictionary other;
    other.append("b", NSArray{"x"});
    other.append("a", 1);
    EXPECT_EQ(one, other);
    other.setObject_forKey(true, "a");
    EXPECT_NE(one, other);
    other.setObject_forKey(1, "a");
    other.append("c", 1);
    EXPECT_NE(one, other);
}

TEST(PropertyListTest, OfAKeyThatWasAppendedTwiceTheLastValueStaysInTheFirstPlace) {
    for (const int count : {4, 100}) {
        NSDictionary dictionary;
        for (int i = 0; i < count; ++i) dictionary.append(std::to_string(i), i);
        dictionary.append("1", "again");
        dictionary.append("2", "again");
        dictionary.append("1", "last");
        dictionary.keepLastOfEachKey();
        ASSERT_EQ(dictionary.count(), static_cast<std::size_t>(count));
        EXPECT_EQ(dictionary.entries()[1].second, "last");
        EXPECT_EQ(dictionary.entries()[2].second, "again");
        EXPECT_EQ(dictionary.entries()[3], NSDictionary::Entry("3", 3));
    }
}

}  // namespace
}  // namespace velmora
