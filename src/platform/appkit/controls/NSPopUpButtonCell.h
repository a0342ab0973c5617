#pragma once

#include <memory>
#include <string>

#include "platform/appkit/NSMenu.h"
#include "platform/appkit/controls/NSButtonCell.h"

namespace velmora {

/// A cell that opens a menu. One that pulls down shows the menu's first item as its face, which
/// cannot be chosen; another shows what was chosen last.
class NSPopUpButtonCell : public NSButtonCell {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    virtual void initTextCell_pullsDown(const std::string& title, bool pullsDown);

    bool pullsDown() const { return pullsDown_; }

    /// Null before one was set.
    const NSMenuRef& menu() const { return menu_; }
    void setMenu(NSMenuRef menu);

    /// What the closed cell says: the face's title.
    std::string faceTitle() const;

    // For desktops

    /// The user has chosen the item, of the menu or of one below it: it runs, and is selected.
    void userChose(NSMenuItem& item);

private:
    NSMenuRef menu_;
    std::weak_ptr<NSMenuItem> selected_;
    bool pullsDown_ = false;
};

using NSPopUpButtonCellRef = std::shared_ptr<NSPopUpButtonCell>;

}  // namespace velmora
