#include "platform/appkit/NSMenu.h"

#include <gmock/gmock.h>

#include "platform/foundation/NSNotificationCenter.h"
#include "platform/runtime/Class.h"
#include "support/HeadlessHost.h"

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

NSMenuItemRef named(const std::string& title) {
    return NSMenuItem::initWithTitle_action_keyEquivalent(title, Selector::named("run:"), "");
}

std::vector<std::string> titlesOf(const NSMenu& menu) {
    std::vector<std::string> titles;
    for (const NSMenuItemRef& item : menu.itemArray()) titles.push_back(item->title());
    return titles;
}

/// Writes down the menu notifications and the actions that it is sent.
class Witness final : public NSObject {
public:
    static Class& classObject() {
        static auto* object = &(new Class("MenuTestWitness", &NSObject::classObject()))
                                   ->method<&Witness::told>("told:")
                                   .method<&Witness::run>("run:");
        return *object;
    }
    Class& isa() const override { return classObject(); }

    void told(const NSNotification& notification) {
        seen.push_back(std::string(notification.name) + ' ' +
                       std::to_string(notification.menuItemIndex.value_or(-1)));
    }
    void run(const Id& sender) {
        ran.push_back(std::static_pointer_cast<NSMenuItem>(sender)->title());
    }
    std::vector<std::string> seen;
    std::vector<std::string> ran;
};

class NSMenuTest : public testing::Test {
protected:
    HeadlessHost host;
    std::shared_ptr<NSMenu> menu = std::make_shared<NSMenu>("File");
};

TEST_F(NSMenuTest, ItemsAreInsertedAtTheIndexWhichIsClamped) {
    menu->insertItem_atIndex(named("b"), 7);
    menu->insertItem_atIndex(named("a"), -1);
    menu->insertItem_atIndex(named("c"), 2);
    menu->insertItem_atIndex(nullptr, 0);
    EXPECT_THAT(titlesOf(*menu), ElementsAre("a", "b", "c"));
    EXPECT_EQ(menu->indexOfItemWithTitle("c"), 2);
    EXPECT_EQ(menu->indexOfItemWithTitle("d"), -1);
    EXPECT_EQ(menu->itemAtIndex(3), nullptr);
    EXPECT_EQ(menu->itemAtIndex(-1), nullptr);
}

TEST_F(NSMenuTest, AnItemStandsInOneMenuOnly) {
    const auto other = std::make_shared<NSMenu>("Edit");
    const NSMenuItemRef item = named("Copy");
    menu->addItem(named("Open"));
    menu->addItem(item);
    other->addItem(item);
    EXPECT_THAT(titlesOf(*menu), ElementsAre("Open"));
    EXPECT_EQ(item->menu(), other.get());
    menu->removeItemAtIndex(5);
    other->removeItemAtIndex(0);
    EXPECT_EQ(item->menu(), nullptr);
}

TEST_F(NSMenuTest, ASubmenuKnowsTheMenuAboveItForAsLongAsItHangsThere) {
    const auto submenu = std::make_shared<NSMenu>("Find");
    const NSMenuItemRef opener = named("Find");
    opener->setSubmenu(submenu);
    EXPECT_EQ(submenu->supermenu(), nullptr);
    menu->addItem(opener);
    EXPECT_EQ(submenu->supermenu(), menu.get());
    menu->removeItemAtIndex(0);
    EXPECT_EQ(submenu->supermenu(), nullptr);
    menu->addItem(opener);
    opener->setSubmenu(nullptr);
    EXPECT_EQ(submenu->supermenu(), nullptr);
    opener->setSubmenu(submenu);
    menu.reset();
    EXPECT_EQ(submenu->supermenu(), nullptr);
    EXPECT_EQ(opener->menu(), nullptr);
}

TEST_F(NSMenuTest, EveryChangeIsToldWithTheItemsIndex) {
    const auto witness = std::make_shared<Witness>();
    for (const std::string_view name :
         {NSMenuDidAddItemNotification, NSMenuDidRemoveItemNotification,
          NSMenuDidChangeItemNotification}) {
        NSNotificationCenter::defaultCenter().addObserver_selector_name_object(
            witness, Selector::named("told:"), name, menu.get());
    }
    menu->addItem(named("a"));
    menu->addItem(named("b"));
    const NSMenuItemRef b = menu->itemAtIndex(1);
    b->setTitle("b");
    b->setTitle("B");
    b->setEnabled(false);
    b->setKeyEquivalent("k");
    menu->removeItemAtIndex(0);
    EXPECT_THAT(
        witness->seen,
        ElementsAre("NSMenuDidAddItemNotification 0", "NSMenuDidAddItemNotification 1",
                    "NSMenuDidChangeItemNotification 1", "NSMenuDidChangeItemNotification 1",
                    "NSMenuDidChangeItemNotification 1", "NSMenuDidRemoveItemNotification 0"))
        << "setting the title that it has is no change";
}

TEST_F(NSMenuTest, OnlyAnEnabledItemThatIsNoSeparatorRuns) {
    const auto witness = std::make_shared<Witness>();
    menu->addItem(named("on"));
    menu->addItem(NSMenuItem::separatorItem());
    menu->addItem(named("off"));
    menu->itemAtIndex(2)->setEnabled(false);
    for (const NSMenuItemRef& item : menu->itemArray()) item->setTarget(witness);
    for (int i = -1; i <= 3; ++i) menu->performActionForItemAtIndex(i);
    EXPECT_THAT(witness->ran, ElementsAre("on"));
}

}  // namespace
}  // namespace velmora
