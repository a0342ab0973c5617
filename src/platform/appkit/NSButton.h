#pragma once

#include <memory>
#include <string>

#include "platform/appkit/NSButtonCell.h"
#include "platform/appkit/NSControl.h"

namespace velmora {

/// A push button.
class NSButton : public NSControl {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    NSButton() : NSControl(std::make_shared<NSButtonCell>()) {}

    // Of its cell

    const std::string& title() const { return buttonCell().title(); }
    void setTitle(std::string title);
    const NSImageRef& image() const { return buttonCell().image(); }
    void setImage(NSImageRef image);
    std::optional<NSSize> imageSize() const { return buttonCell().imageSize(); }
    void setImageSize(NSSize size);
    NSCellImagePosition imagePosition() const { return buttonCell().imagePosition(); }
    void setImagePosition(NSCellImagePosition position);

private:
    NSButtonCell& buttonCell() const { return static_cast<NSButtonCell&>(*cell()); }
};

using NSButtonRef = std::shared_ptr<NSButton>;

}  // namespace velmora
