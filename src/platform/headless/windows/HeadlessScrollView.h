#pragma once

#include <string>

#include "platform/appkit/NSScrollView.h"
#include "platform/headless/windows/HeadlessView.h"

namespace velmora {

/// A view of a host's window that shows a part of a document.
class HeadlessScrollView final : public HeadlessViewOf<NSScrollView> {
public:
    HeadlessScrollView(const ViewDescription& description, const std::weak_ptr<NSWindow>& window,
                       const CommandHandler& handler);

    const std::string& name() const { return name_; }

    bool acceptsFirstResponder() override { return takesKeys(); }
    std::shared_ptr<NSClipView> contentView() override;
    float horizontalLineScroll() override { return line_.width; }
    float verticalLineScroll() override { return line_.height; }
    NSRect documentVisibleRect() override;
    void reflectScrolledClipView(NSClipView& /*clipView*/) override {}

private:
    class ClipView;

    std::string name_;
    NSSize line_;
    std::shared_ptr<ClipView> clipView_;
};

}  // namespace velmora
