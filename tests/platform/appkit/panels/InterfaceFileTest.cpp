#include "platform/appkit/panels/InterfaceFile.h"

#include <gmock/gmock.h>

#include "platform/appkit/controls/NSButton.h"
#include "platform/appkit/controls/NSImageView.h"
#include "platform/appkit/controls/NSSlider.h"
#include "platform/appkit/controls/NSTableView.h"
#include "platform/foundation/files/OldStylePropertyList.h"
#include "platform/runtime/Class.h"
#include "support/HeadlessHost.h"

namespace velmora {
namespace {

using testing::ElementsAre;

class Owner final : public NSObject {
public:
    static Class& classObject() {
        static auto* object = &(new Class("InterfaceTestOwner", &NSObject::classObject()))
                                   ->method<&Owner::setPanel>("setPanel:")
                                   .method<&Owner::act>("act:");
        return *object;
    }
    Class& isa() const override { return classObject(); }

    std::shared_ptr<NSPanel> panel;
    Id acted;

private:
    void setPanel(const Id& object) { panel = std::dynamic_pointer_cast<NSPanel>(object); }
    void act(const Id& sender) { acted = sender; }
};

class InterfaceFileTest : public testing::Test {
protected:
    /// "" when it was loaded, else place and reason.
    std::string load(const std::string& text) {
        const auto contents = propertyListFromOldStyleText(text);
        if (!contents || !contents->dictionary()) return "malformed test";
        InterfaceFile file(*contents->dictionary(),
                           [](const std::string& english) { return '<' + english + '>'; });
        InterfaceFile::Error error;
        return file.load(owner_, error) ? "" : error.place + ": " + error.reason;
    }
    template <class Kind>
    std::shared_ptr<Kind> control(const char* name) {
        return std::dynamic_pointer_cast<Kind>(owner_->panel->controlNamed(name));
    }

    HeadlessHost host_;
    std::shared_ptr<Owner> owner_ = std::make_shared<Owner>();
};

constexpr const char* everything = R"({
    objects = {
        panel = {
            class = NSPanel; title = "Panel"; delegate = owner; drawer = drawer;
            rows = (
                ( { label = "Name:"; }, field, area ),
                ( { matrix = boxes; row = 1; }, slider, picture ),
                ( { matrix = boxes; row = 0; }, radio, titles ),
                ( table ),
                ( add, box, toggle )
            );
        };
        field = { class = NSTextField; text = "x.yy"; editable = NO; };
        area = { class = NSTextView; editable = NO; delegate = owner; };
        slider = { class = NSSlider; minValue = 5; maxValue = 60; action = "act:"; };
        picture = { class = NSImageView; imageSize = 64; };
        boxes = { class = NSMatrix; mode = checks; rows = 2; columns = 2; titles = (A, B); };
        radio = { class = NSMatrix; mode = radio; columns = 3; tags = ("-1", 0, 2); tag = 10;
                  imageOnly = YES; action = "act:"; };
        titles = { class = NSMatrix; mode = texts; rows = 2; titles = (First, Second); };
        table = { class = NSTableView; columns = (one, two); dataSource = owner; delegate = owner;
                  rowHeight = 20; multipleSelection = NO; };
        one = { class = NSTableColumn; identifier = "isGlobal"; title = "G"; width = 24;
                resizable = NO; };
        two = { class = NSTableColumn; identifier = "Path"; editable = NO; };
        add = { class = NSButton; title = "Add"; action = "act:"; keyEquivalent = return; };
        box = { class = NSButton; type = switch; title = "Box"; enabled = NO; };
        toggle = { class = NSButton; title = "Preview"; action = "toggle:"; target = drawer;
                   hidden = YES; };
        drawer = { class = NSDrawer; content = preview; width = 120; height = 80; };
        preview = { class = NSControl; };
    };
    outlets = { panel = panel; };
})";

TEST_F(InterfaceFileTest, EveryKindOfControlIsMadeAsDescribed) {
    ASSERT_EQ(load(everything), "");
    NSPanel& panel = *owner_->panel;
    EXPECT_EQ(panel.title(), "<Panel>");
    EXPECT_EQ(panel.delegate(), owner_);
    EXPECT_EQ(panel.controls().size(), 11U) << "the matrix of two rows is one control";
    EXPECT_EQ(control<NSTextField>("field")->stringValue(), "<x.yy>");
    EXPECT_FALSE(control<NSTextField>("field")->isEditable());
    EXPECT_FALSE(control<NSTextView>("area")->isEditable());
    EXPECT_EQ(control<NSSlider>("slider")->doubleValue(), 5);
    EXPECT_EQ(control<NSSlider>("slider")->maxValue(), 60);
    EXPECT_EQ(control<NSImageView>("picture")->cell()->imageSize(), (NSSize{64, 64}));
    EXPECT_EQ(panel.viewWithTag(10), control<NSMatrix>("radio"));
    EXPECT_TRUE(control<NSMatrix>("radio")->selectCellWithTag(-1));
    EXPECT_EQ(
        std::static_pointer_cast<NSButtonCell>(control<NSMatrix>("boxes")->cellWithTag(3))->title(),
        "<B>");
    EXPECT_EQ(control<NSMatrix>("titles")->cellWithTag(1)->stringValue(), "<Second>");
    const auto table = control<NSTableView>("table");
    EXPECT_EQ(table->rowHeight(), 20);
    EXPECT_EQ(table->tableColumns()[0]->headerCell()->stringValue(), "<G>");
    EXPECT_EQ(table->tableColumns()[0]->width(), 24);
    EXPECT_FALSE(table->tableColumns()[0]->isResizable());
    EXPECT_FALSE(table->tableColumnWithIdentifier("Path")->isEditable());
    EXPECT_FALSE(control<NSButton>("box")->isEnabled());
    control<NSButton>("add")->performClick(nullptr);
    EXPECT_EQ(owner_->acted, control<NSButton>("add"));
}

TEST_F(InterfaceFileTest, AHiddenButtonOpensTheDrawerOnceItIsShown) {
    ASSERT_EQ(load(everything), "");
    const NSContentDrawerRef& drawer = owner_->panel->drawer();
    const auto toggle = control<NSButton>("toggle");
    EXPECT_TRUE(toggle->isTransparent());
    toggle->performClick(nullptr);
    EXPECT_FALSE(drawer->isOpen());
    toggle->setEnabled(true);
    toggle->performClick(nullptr);
    EXPECT_TRUE(drawer->isOpen());
    EXPECT_EQ(drawer->contentSize(), (NSSize{120, 80}));
    EXPECT_EQ(drawer->content(), control<NSControl>("preview"));
}

TEST_F(InterfaceFileTest, WhatIsWrongIsToldByItsPlace) {
    const struct {
        const char* objects;
        const char* fault;
    } rows[] = {
        {"a = { class = NSButton; tilte = Add; };", "objects.a.tilte: unknown key"},
        {"a = { class = NSButon; };", "objects.a.class: unknown class 'NSButon'"},
        {"a = { class = NSBundle; };", "objects.a.class: unknown class 'NSBundle'"},
        {"a = text;", "objects.a: no dictionary"},
        {"a = { class = NSButton; action = \"go:\"; };",
         "objects.a.action: the owner has no 'go:'"},
        {"a = { class = NSButton; action = \"act:\"; target = b; }; b = { class = NSSlider; };",
         "objects.a.action: the target has no 'act:'"},
        {"a = { class = NSButton; target = b; };", "objects.a.target: no such object 'b'"},
        {"a = { class = NSButton; type = radio; };", "objects.a.type: neither push nor switch"},
        {"a = { class = NSButton; title = (); };", "objects.a.title: no text"},
        {"a = { class = NSButton; imageSize = 2000; };",
         "objects.a.imageSize: no number from 1 to 1024"},
        {"a = { class = NSTextField; delegate = b; };",
         "objects.a.delegate: only the owner can be it"},
        {"a = { class = NSMatrix; };", "objects.a.mode: neither checks nor radio nor texts"},
        {"a = { class = NSMatrix; mode = radio; rows = 0; };",
         "objects.a.rows: no number from 1 to 100"},
        {"a = { class = NSMatrix; mode = radio; columns = 2; tags = (1); };",
         "objects.a.tags: not one for each cell"},
        {"a = { class = NSTableView; columns = (b); }; b = { class = NSButton; };",
         "objects.a.columns: 'b' is no column"},
        {"a = { class = NSTableColumn; };", "objects.a.identifier: no text"},
        {"a = { class = NSDrawer; };", "objects.a.content: no such object ''"},
        {"a = { class = NSPanel; };", "objects.a.rows: no array"},
        {"a = { class = NSPanel; rows = (b); };", "objects.a.rows[0]: no array"},
        {"a = { class = NSPanel; rows = ((), (a)); };", "objects.a: it holds itself"},
        {"a = { class = NSPanel; rows = ((()),); };",
         "objects.a.rows[0]: a cell that is neither a name nor a label"},
        {"a = { class = NSPanel; rows = (({ matrix = m; row = 1; })); };"
         "m = { class = NSMatrix; mode = checks; };",
         "objects.a.rows[0].row: no number from 0 to 0"},
        {"a = { class = NSMenu; items = ({ title = x; submenu = b; }); }; b = { class = NSButton; "
         "};",
         "objects.a.items[0].submenu: no menu"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(load(std::string("{ objects = {") + row.objects + "}; }"), row.fault);
    }
    EXPECT_EQ(load("{}"), "objects: no dictionary");
    EXPECT_EQ(load("{ objects = {}; outlets = { table = a; }; }"),
              "outlets.table: the owner has no such outlet");
    EXPECT_EQ(owner_->panel, nullptr);
}

}  // namespace
}  // namespace velmora
