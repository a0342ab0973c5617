#pragma once

#include <string>

#include "platform/appkit/controls/NSActionCell.h"

namespace velmora {

/// What of a button's title and picture is shown; the platform's numbers.
enum NSCellImagePosition { NSNoImage = 0, NSImageOnly = 1, NSImageLeft = 2 };

/// A button that is pushed and springs back, one that switches between off and on, and one of
/// several of which one is on; the platform's numbers.
enum NSButtonType { NSMomentaryPushInButton = 0, NSSwitchButton = 3, NSRadioButton = 4 };

/// By what a button shows its state; the platform's numbers.
enum NSCellStyleMask { NSNoCellMask = 0, NSContentsCellMask = 1 };

/// What a button says and shows. One that shows its state by its contents and has an alternate
/// picture shows nothing but the picture of its state; a desktop paints that in the middle of the
/// frame once it has had the interior drawn.
class NSButtonCell : public NSActionCell {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// Also the name by which the button is known where the title is not shown.
    const std::string& title() const { return title_; }
    void setTitle(std::string title);

    NSButtonType buttonType() const { return buttonType_; }
    void setButtonType(NSButtonType type);

    /// Shown in place of the image while the state is on; null for the same.
    const NSImageRef& alternateImage() const { return alternateImage_; }
    void setAlternateImage(NSImageRef image);
    int showsStateBy() const { return showsStateBy_; }
    void setShowsStateBy(int mask);
    /// The picture of the state.
    const NSImageRef& shownImage() const;

    NSCellImagePosition imagePosition() const { return imagePosition_; }
    void setImagePosition(NSCellImagePosition position);

    /// Not shown at all, though it keeps its place.
    bool isTransparent() const { return transparent_; }
    void setTransparent(bool transparent);

    /// The key that clicks it: "\r" makes it the default button of its panel.
    const std::string& keyEquivalent() const { return keyEquivalent_; }
    void setKeyEquivalent(std::string key);

    /// Turns a switch from off to on, or back. Any other button is left alone.
    void setNextState();

    /// The value is the state.
    ObjectValue objectValue() const override { return PropertyList(state()); }
    void setObjectValue(const ObjectValue& value) override;
    int intValue() const override { return state(); }

private:
    std::string title_;
    std::string keyEquivalent_;
    NSImageRef alternateImage_;
    NSButtonType buttonType_ = NSMomentaryPushInButton;
    NSCellImagePosition imagePosition_ = NSImageLeft;
    int showsStateBy_ = NSNoCellMask;
    bool transparent_ = false;
};

using NSButtonCellRef = std::shared_ptr<NSButtonCell>;

}  // namespace velmora
