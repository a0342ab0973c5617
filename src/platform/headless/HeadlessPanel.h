#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/appkit/controls/NSButton.h"
#include "platform/appkit/panels/NSPanel.h"
#include "platform/headless/HeadlessTable.h"

namespace velmora {

class HeadlessDesktop;

/// The window of a panel: 300 points wide, and 40 high with 24 more for each row. The panel owns
/// it; the desktop must outlive it. Its controls are drawn when it comes up, and when one is added.
class HeadlessPanel final : public PanelPeer {
public:
    HeadlessPanel(HeadlessDesktop& desktop, NSPanel& panel);
    ~HeadlessPanel() override;
    HeadlessPanel(const HeadlessPanel&) = delete;
    HeadlessPanel& operator=(const HeadlessPanel&) = delete;

    // For the panel

    NSRect frame() override { return frame_; }
    void setFrameOrigin(NSPoint origin) override { frame_.origin = origin; }
    void center() override;
    void makeKeyAndOrderFront() override;
    void makeKeyWindow() override;
    void orderOut() override;
    bool isVisible() override { return visible_; }
    int windowNumber() override { return number_; }
    /// At the panel's right edge, as high as the panel.
    NSRect drawerFrame() override;
    void contentChanged() override;
    /// Fetches and dispatches events as long as it lasts.
    void runModal() override;
    void endModal() override;

    // For the desktop and whoever plays the user

    /// What takes the keys again when the panel goes.
    const std::weak_ptr<NSWindow>& before() const { return before_; }
    void setBefore(const NSWindowRef& window) { before_ = window; }

    NSPanel& panel() { return panel_; }
    NSWindowRef window() { return std::static_pointer_cast<NSWindow>(panel_.shared_from_this()); }
    const std::string& title() const { return panel_.title(); }
    /// The field that has the keys, or the first one; without one, null.
    NSTextField* field() const;
    /// The first button of that title, shown or not; without one, null.
    NSButtonRef buttonTitled(const std::string& title) const;
    /// A key that the user presses while the panel is key. An Escape that nobody wants closes it.
    void keyDown(const NSEventRef& event);
    /// An extra button that the user presses over the panel is taken to be pressed over its table.
    void otherMouseDown(const NSEventRef& event);
    /// What the button in its title bar does.
    void userCloses();

private:
    /// What the user has given the keys to, else the first field, else the first table; maybe null.
    NSControlRef focused() const;
    /// False without a button that the key clicks.
    bool clickButtonWithKey(const std::string& key);
    void watchTables();
    /// As a window does when it comes up.
    void drawControls();

    HeadlessDesktop& desktop_;
    NSPanel& panel_;
    int number_;
    std::weak_ptr<NSWindow> before_;
    std::vector<std::unique_ptr<HeadlessTable>> tables_;
    NSRect frame_;
    bool visible_ = false;
    bool ended_ = false;
    /// The modal loop waits for an event.
    bool fetching_ = false;
};

}  // namespace velmora
