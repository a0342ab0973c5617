#pragma once

#include <memory>
#include <string>

#include "platform/appkit/controls/NSButtonCell.h"
#include "platform/appkit/controls/NSControl.h"

namespace velmora {

/// A push button, or with the type NSSwitchButton a check box, whose integer value is its state.
class NSButton : public NSControl {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    NSButton() : NSControl(std::make_shared<NSButtonCell>()) {}

    /// A click on a check box changes its state before the action goes out.
    void performClick(const Id& sender) override;

    // What its cell holds

    const std::string& title() const { return buttonCell().title(); }
    void setTitle(std::string title) { buttonCell().setTitle(std::move(title)); }
    NSButtonType buttonType() const { return buttonCell().buttonType(); }
    void setButtonType(NSButtonType type) { buttonCell().setButtonType(type); }
    int state() const { return buttonCell().state(); }
    void setState(int state) { buttonCell().setState(state); }
    const NSImageRef& image() const { return buttonCell().image(); }
    void setImage(NSImageRef image) { buttonCell().setImage(std::move(image)); }
    std::optional<NSSize> imageSize() const { return buttonCell().imageSize(); }
    void setImageSize(NSSize size) { buttonCell().setImageSize(size); }
    NSCellImagePosition imagePosition() const { return buttonCell().imagePosition(); }
    void setImagePosition(NSCellImagePosition position) { buttonCell().setImagePosition(position); }
    bool isTransparent() const { return buttonCell().isTransparent(); }
    void setTransparent(bool transparent) { buttonCell().setTransparent(transparent); }
    const std::string& keyEquivalent() const { return buttonCell().keyEquivalent(); }
    void setKeyEquivalent(std::string key) { buttonCell().setKeyEquivalent(std::move(key)); }

private:
    NSButtonCell& buttonCell() const { return static_cast<NSButtonCell&>(*cell()); }
};

using NSButtonRef = std::shared_ptr<NSButton>;

}  // namespace velmora
