#pragma once

#include <memory>

#include "platform/appkit/controls/NSControl.h"

namespace velmora {

/// Shows a picture, as large as its cell's image size says, and lets nobody act on it.
class NSImageView final : public NSControl {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// Null for none.
    const NSImageRef& image() const { return cell()->image(); }
    void setImage(NSImageRef image) { cell()->setImage(std::move(image)); }
};

using NSImageViewRef = std::shared_ptr<NSImageView>;

}  // namespace velmora
