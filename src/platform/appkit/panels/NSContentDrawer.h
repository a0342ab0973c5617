#pragma once

#include <memory>
#include <string>

#include "platform/appkit/NSWindow.h"
#include "platform/appkit/controls/NSControl.h"

namespace velmora {

class NSPanel;

/// A drawer of a panel of ours: one control that slides out beside the panel. `open:`, `close:` and
/// `toggle:` are actions too. Its window takes no keys of its own: they are the panel's.
class NSContentDrawer final : public NSDrawer {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// Closed.
    explicit NSContentDrawer(NSControlRef content);

    const NSControlRef& content() const { return content_; }
    /// There are no views in it over which a gesture can start.
    std::shared_ptr<NSView> contentView() override;
    /// How large the content is shown, in points.
    NSSize contentSize() const { return contentSize_; }
    void setContentSize(NSSize size) { contentSize_ = size; }

    bool isOpen() const { return open_; }
    void open(const Id& sender);
    void close(const Id& sender);
    void toggle(const Id& sender);

    // For the panel

    /// The one beside which it opens; null when that goes.
    void setPanel(NSPanel* panel);

private:
    class Window;
    void setOpen(bool open);

    NSControlRef content_;
    NSSize contentSize_{200, 200};
    NSPanel* panel_ = nullptr;
    /// Null without a panel.
    std::shared_ptr<Window> window_;
    bool open_ = false;
};

using NSContentDrawerRef = std::shared_ptr<NSContentDrawer>;

}  // namespace velmora
