#include "definitions/VelmoraUtils.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "definitions/VelmoraMenuItemAdditions.h"
#include "platform/appkit/NSMenu.h"
#include "platform/runtime/Class.h"

namespace velmora {
namespace {

/// The titles of a chain of menus, the bar's first, and of the item in the last of them.
struct Chain {
    std::vector<std::string> titles;
    std::string path;
};

TEST(VelmoraUtilsTest, PathsJoinTitlesFromTheOutermostSubmenuDown) {
    const std::vector<Chain> rows{
        {{"Save"}, "Save"},
        {{"MainMenu", "Quit"}, "Quit"},
        {{"MainMenu", "File", "Save"}, "File/Save"},
        {{"MainMenu", "Edit", "Find", "Find…"}, "Edit/Find/Find…"},
        {{"", "File", "Open/Close"}, "File/Open/Close"},
        {{"", "File", ""}, "File/"},
        {{"", "", "Save"}, "Save"},
        {{"", "File", "", "Save"}, "File/Save"},
        {{"", "File/", "/Save"}, "File/Save"},
        {{"", "File", "Save/"}, "File/Save/"},
        {{"", "/", "x"}, "/x"},
        {{"", "a", "//", "b"}, "a/b"},
    };
    static const Selector pathSelector = Selector::named("velmoraMenuItemPath");
    for (const Chain& row : rows) {
        std::vector<NSMenuRef> menus;
        NSMenuItemRef item;
        for (std::size_t i = 0; i < row.titles.size(); ++i) {
            const bool last = i + 1 == row.titles.size();
            if (i > 0 || last) {
                item =
                    NSMenuItem::initWithTitle_action_keyEquivalent(row.titles[i], Selector(), "");
                if (!menus.empty()) menus.back()->addItem(item);
            }
            if (!last) {
                menus.push_back(std::make_shared<NSMenu>(row.titles[i]));
                if (item) item->setSubmenu(menus.back());
            }
        }
        EXPECT_EQ(VelmoraUtils::menuItemPathFor(*item), row.path);
        EXPECT_EQ(message<std::string()>(*item, pathSelector), row.path);
        EXPECT_TRUE(VelmoraUtils::mayHavePath(*item, row.path)) << row.path;
    }
}

}  // namespace
}  // namespace velmora
