#include "loader/SettingsDifference.h"

#include <gmock/gmock.h>

namespace velmora {
namespace {

using testing::ElementsAreArray;

TEST(SettingsDifferenceTest, TellsWhatWasAddedRemovedAndChanged) {
    const struct {
        const char* before;
        const char* after;
        std::vector<std::string> phrases;
    } rows[] = {
        {"({Trigger = l; Path = a;})", "({Path = a; Trigger = l;})", {}},
        {"()", "({Trigger = l; Path = a;})", {"added \"l\" for \"a\""}},
        {"({Trigger = l; Path = a;}, {Trigger = l; Path = a;})",
         "({Trigger = l; Path = a;})",
         {"removed \"l\" for \"a\""}},
        {"({Trigger = l; Path = a;}, {Trigger = r; Path = b;}, {Trigger = u; Path = c;})",
         "({Trigger = l; Path = z;}, {Trigger = ud; Path = b;}, {Trigger = x; Path = y;})",
         {"changed \"l\" for \"a\" to \"l\" for \"z\"",
          "changed \"r\" for \"b\" to \"ud\" for \"b\"", "removed \"u\" for \"c\"",
          "added \"x\" for \"y\""}},
        {"({Trigger = l; isGlobal = 0;})",
         "({Trigger = l; isGlobal = 1;})",
         {"changed \"l\" for \"\""}},
        {"({Trigger = l;}, {Trigger = r;})",
         "({Trigger = r;}, {Trigger = l;})",
         {"changed the order"}},
        {"()",
         "({Trigger = t; Path = \"one\\ntwo\";}, word)",
         {"added \"t\" for \"one…\"", "added what is no definition"}},
        {"{gestureSize = 15; a = b;}",
         "<dict><key>gestureSize</key><integer>30</integer><key>flavor</key><real>2.5</real></"
         "dict>",
         {"changed gestureSize from 15 to 30", "removed a", "added flavor 2.5"}},
        {"({Trigger = l", "()", {"changed all of it"}},
        {"({Trigger = l", "({Trigger = l", {}},
    };
    for (const auto& row : rows) {
        EXPECT_THAT(differencesBetween(row.before, row.after), ElementsAreArray(row.phrases))
            << row.before << " " << row.after;
    }
}

}  // namespace
}  // namespace velmora
