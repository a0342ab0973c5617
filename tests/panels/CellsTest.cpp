#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "panels/VelmoraGlobalFlagCell.h"
#include "panels/VelmoraMenuItem.h"
#include "panels/VelmoraMenuSelectorCell.h"
#include "platform/appkit/NSApplication.h"
#include "support/HeadlessHost.h"

namespace velmora {
namespace {

TEST(VelmoraMenuSelectorCellTest, TheMenuBarIsCopiedWithEveryItemEnabled) {
    HeadlessHost host("Editor");
    host.menu({submenu("", {disabled(itemWithKey("Quit", "terminate:", "q", NSCommandKeyMask))}),
               submenu("Edit", {item("Copy", "copy:"), separator(),
                                submenu("Find", {item("Next", "next:")})}),
               item("")});
    host.launch();
    VelmoraMenuSelectorCell cell;
    cell.initTextCell_pullsDown("", true);
    const NSMenu& copy = *cell.menu();
    ASSERT_EQ(copy.numberOfItems(), 4);
    EXPECT_EQ(copy.itemAtIndex(0)->title(), "title");
    EXPECT_FALSE(copy.itemAtIndex(0)->action());
    EXPECT_EQ(copy.itemAtIndex(1)->title(), "Editor");
    EXPECT_EQ(copy.itemAtIndex(3)->title(), "");
    const NSMenuRef edit = copy.itemAtIndex(2)->submenu();
    EXPECT_TRUE(edit->itemAtIndex(1)->isSeparatorItem());
    for (const NSMenuItemRef& made :
         {copy.itemAtIndex(1)->submenu()->itemAtIndex(0), edit->itemAtIndex(0),
          edit->itemAtIndex(2)->submenu()->itemAtIndex(0)}) {
        EXPECT_EQ(&made->isa(), &VelmoraMenuItem::classObject()) << made->title();
        EXPECT_TRUE(made->isEnabled()) << made->title();
        EXPECT_EQ(made->keyEquivalent(), "") << made->title();
    }
    EXPECT_EQ(edit->itemAtIndex(0)->representedObject(), host.itemAt("Edit/Copy"));

    cell.setObjectValue(PropertyList("Some/Path"));
    EXPECT_EQ(cell.faceTitle(), "Some/Path");
    cell.setObjectValue(ObjectValue());
    EXPECT_EQ(cell.faceTitle(), "Some/Path");
    cell.userChose(*edit->itemAtIndex(2)->submenu()->itemAtIndex(0));
    EXPECT_TRUE(host.commands().empty());
    const Id chosen = objectOf(cell.objectValue());
    EXPECT_EQ(chosen, edit->itemAtIndex(2)->submenu()->itemAtIndex(0));
    cell.setObjectValue(chosen);
    EXPECT_EQ(cell.faceTitle(), "Edit/Find/Next");
}

TEST(VelmoraGlobalFlagCellTest, TheGlobeFitsAndOnlyNumbersAreTaken) {
    const HeadlessHost host("Editor");
    VelmoraGlobalFlagCell cell;
    cell.init();
    EXPECT_EQ(cell.image(), nullptr);
    cell.setObjectValue(PropertyList(true));
    for (const ObjectValue& other : {ObjectValue(), ObjectValue(PropertyList("0")),
                                     ObjectValue(Id(NSMenuItem::separatorItem()))}) {
        cell.setObjectValue(other);
        EXPECT_EQ(cell.state(), NSOnState);
    }
    struct Row {
        NSSize size;
        NSImageRef shown;
    };
    ASSERT_TRUE(VelmoraGlobalFlagCell::onImage());
    ASSERT_NE(VelmoraGlobalFlagCell::onImage(), VelmoraGlobalFlagCell::onImageSmall());
    for (const Row& row : {Row{{22, 22}, VelmoraGlobalFlagCell::onImage()},
                           Row{{60, 21}, VelmoraGlobalFlagCell::onImageSmall()},
                           Row{{21, 60}, VelmoraGlobalFlagCell::onImageSmall()}}) {
        cell.drawInteriorWithFrame_inView({{0, 0}, row.size}, nullptr);
        EXPECT_EQ(cell.shownImage(), row.shown) << row.size.width;
    }
    cell.setObjectValue(PropertyList(0));
    EXPECT_EQ(cell.shownImage(), nullptr);
}

}  // namespace
}  // namespace velmora
