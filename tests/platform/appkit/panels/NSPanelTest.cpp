#include "platform/appkit/panels/NSPanel.h"

#include <gmock/gmock.h>

#include "platform/appkit/NSApplication.h"
#include "platform/appkit/controls/NSButton.h"
#include "platform/appkit/panels/NSAlert.h"
#include "platform/foundation/NSNotificationCenter.h"
#include "platform/runtime/Class.h"
#include "support/HeadlessHost.h"

namespace velmora {
namespace {

using testing::ElementsAre;

/// Lets go of its panel when that closes, and notes what alerts answer.
class Owner final : public NSObject {
public:
    static Class& classObject() {
        static auto* object = &(new Class("PanelTestOwner", &NSObject::classObject()))
                                   ->method<&Owner::windowWillClose>("windowWillClose:")
                                   .method<&Owner::close>("close:")
                                   .method<&Owner::didEnd>("sheetDidEnd:returnCode:contextInfo:");
        return *object;
    }
    Class& isa() const override { return classObject(); }

    NSPanelRef panel;
    int closed = 0;
    std::string answers;

private:
    void windowWillClose(const NSNotification& notification) {
        if (notification.object != panel.get() || panel->isVisible()) return;
        ++closed;
        panel = nullptr;
    }
    void close(const Id& sender) { panel->performClose(sender); }
    void didEnd(NSPanel& sheet, int code, const PropertyList& context) {
        answers += sheet.title() + ' ' + std::to_string(code) + ' ' + *context.string() + '\n';
    }
};

class NSPanelTest : public testing::Test {
protected:
    NSPanelTest() { open(); }

    void open() {
        button_ = std::make_shared<NSButton>();
        button_->setTitle("Done");
        button_->setTag(7);
        button_->setTarget(owner_);
        button_->setAction(Selector::named("close:"));
        owner_->panel =
            std::make_shared<NSPanel>("Panel", std::vector<NSPanel::Row>{{button_}, {field_}});
        owner_->panel->setDelegate(owner_);
        owner_->panel->makeKeyAndOrderFront();
    }
    void sheet(const char* context) {
        NSBeginAlertSheet("Sure?", "Yes", "No", "", *owner_->panel, owner_,
                          Selector::named("sheetDidEnd:returnCode:contextInfo:"),
                          PropertyList(context), "Really?");
    }
    void click(const std::string& title) {
        host_.then([this, title] {
            HeadlessPanel* panel = host_.desktop().frontPanel();
            const NSButtonRef button = panel ? panel->buttonTitled(title) : nullptr;
            ASSERT_NE(button, nullptr) << title;
            button->performClick(nullptr);
        });
    }
    void close() {
        host_.then([this] { host_.desktop().frontPanel()->userCloses(); });
    }

    HeadlessHost host_;
    std::shared_ptr<Owner> owner_ = std::make_shared<Owner>();
    NSButtonRef button_;
    NSTextFieldRef field_ = std::make_shared<NSTextField>();
};

TEST_F(NSPanelTest, ClosingHidesThePanelAndItsOwnerMayLetItGoThen) {
    button_->performClick(nullptr);
    EXPECT_EQ(owner_->closed, 1);
    EXPECT_EQ(owner_->panel, nullptr);
    open();
    close();
    host_.run();
    EXPECT_EQ(owner_->closed, 2);
    open();
    host_.type("escape");
    host_.run();
    EXPECT_EQ(owner_->closed, 3);
    open();
    owner_->panel->orderOut();
    owner_->panel->performClose(nullptr);
    EXPECT_EQ(owner_->closed, 3) << "what does not show is not closed";
    EXPECT_EQ(host_.desktop().frontPanel(), nullptr);
}

TEST_F(NSPanelTest, ControlsAreFoundAndTakeTheKeyboardIfTheyWantIt) {
    NSPanel& panel = *owner_->panel;
    field_->setName("name");
    EXPECT_EQ(panel.viewWithTag(7), button_);
    EXPECT_EQ(panel.viewWithTag(8), nullptr);
    EXPECT_EQ(panel.controlNamed("name"), field_);
    EXPECT_FALSE(panel.makeFirstResponder(button_));
    EXPECT_FALSE(panel.makeFirstResponder(std::make_shared<NSTextField>())) << "not in the panel";
    EXPECT_TRUE(panel.makeFirstResponder(field_));
    EXPECT_EQ(panel.firstResponder(), field_);
    field_->setEditable(false);
    EXPECT_FALSE(panel.makeFirstResponder(field_));
}

TEST_F(NSPanelTest, APanelThatShowsIsAmongTheWindowsAndUnderItsNumber) {
    NSPanel& panel = *owner_->panel;
    WindowDescription main;
    main.title = "Main";
    main.frame = {{0, 0}, {100, 100}};
    host_.window(main);
    host_.activate();
    const NSWindowRef window = host_.desktop().windowTitled("Main");
    EXPECT_THAT(NSApp().orderedWindows(), ElementsAre(owner_->panel, window));
    EXPECT_NE(panel.windowNumber(), window->windowNumber());
    EXPECT_EQ(NSApp().windowWithNumber(panel.windowNumber()), owner_->panel);
    EXPECT_EQ(NSApp().keyWindow(), owner_->panel);
    EXPECT_EQ(NSApp().mainWindow(), window);
    window->makeKeyWindow();
    EXPECT_EQ(NSApp().keyWindow(), window);
    EXPECT_TRUE(panel.isVisible());
    panel.makeKeyAndOrderFront();
    panel.orderOut();
    EXPECT_EQ(NSApp().keyWindow(), window);
    EXPECT_THAT(NSApp().orderedWindows(), ElementsAre(window));
    EXPECT_EQ(NSApp().windowWithNumber(panel.windowNumber()), nullptr);
}

TEST_F(NSPanelTest, FramesAreKeptInAFileThatEveryProcessReads) {
    const std::string file = host_.settingsFile("Frames.plist");
    host_.writeSettings("Frames.plist", "{}");
    NSPanel::setFrameFile(file);
    owner_->panel->setFrameAutosaveName("One");
    owner_->panel->setFrameOrigin({30, 40.5F});
    close();
    host_.run();
    open();
    EXPECT_EQ(owner_->panel->frame().origin, (NSPoint{0, 0}));
    owner_->panel->setFrameAutosaveName("Other");
    EXPECT_EQ(owner_->panel->frame().origin, (NSPoint{0, 0}));
    owner_->panel->setFrameAutosaveName("One");
    EXPECT_EQ(owner_->panel->frame().origin, (NSPoint{30, 40.5F}));
    for (const char* broken :
         {"{ One = \"1 2 3\"; }", "{ One = \"a b c d\"; }", "{ One = \"1 2 0 9\"; }",
          "{ One = \"nan 1 1 1\"; }", "{ One = \"1e9 1 1 1\"; }", "{ One = (1); }", "(One)", "{"}) {
        host_.writeSettings("Frames.plist", broken);
        owner_->panel->setFrameAutosaveName("One");
        EXPECT_EQ(owner_->panel->frame().origin, (NSPoint{30, 40.5F})) << broken;
    }
    host_.writeSettings("Frames.plist", "{}");
    host_.files().setWriteFails(file, true);
    owner_->panel->performClose(nullptr);
    EXPECT_THAT(host_.log(), ElementsAre("The panels' places cannot be written to '" + file + "'"));
}

TEST_F(NSPanelTest, AnAlertWaitsForItsAnswerAndClosingItMeansNo) {
    const struct {
        const char* act;
        const char* alternate;
        int answer;
    } rows[] = {
        {"Yes", "No", NSAlertDefaultReturn},     {"No", "No", NSAlertAlternateReturn},
        {"Maybe", "No", NSAlertOtherReturn},     {"escape", "No", NSAlertAlternateReturn},
        {"escape", "", NSAlertDefaultReturn},    {"return", "No", NSAlertDefaultReturn},
        {"close", "No", NSAlertAlternateReturn},
    };
    for (const auto& row : rows) {
        const std::string act = row.act;
        if (act == "close") {
            close();
        } else if (act == "escape" || act == "return") {
            host_.type(act);
        } else {
            click(act);
        }
        const int answer = NSRunAlertPanel("Sure?", "Really?", "Yes", row.alternate, "Maybe");
        EXPECT_EQ(answer, row.answer) << act << " with " << row.alternate;
    }
    click("OK");
    EXPECT_EQ(NSRunInformationalAlertPanel("", "", "", "", ""), NSAlertDefaultReturn);
    EXPECT_EQ(host_.desktop().frontPanel()->title(), "Panel");
}

TEST_F(NSPanelTest, ASheetBlocksItsPanelAndTellsItsDelegateOnce) {
    sheet("first");
    sheet("second");
    EXPECT_EQ(host_.desktop().frontPanel()->title(), "Sure?");
    click("Yes");
    host_.run();
    EXPECT_EQ(owner_->answers, "Sure? 1 first\n");
    EXPECT_EQ(host_.desktop().frontPanel()->title(), "Panel");
    sheet("third");
    host_.type("escape");
    host_.run();
    EXPECT_EQ(owner_->answers, "Sure? 1 first\nSure? 0 third\n");
    sheet("fourth");
    const NSPanelRef kept = owner_->panel;
    owner_->panel->performClose(nullptr);
    EXPECT_EQ(host_.desktop().frontPanel(), nullptr) << "the sheet goes with its panel";
    EXPECT_EQ(owner_->answers, "Sure? 1 first\nSure? 0 third\n");
}

}  // namespace
}  // namespace velmora
