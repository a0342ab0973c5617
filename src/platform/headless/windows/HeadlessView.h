#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "platform/appkit/NSView.h"
#include "platform/headless/windows/HeadlessMenu.h"
#include "platform/headless/windows/HostDescription.h"

namespace velmora {

/// What all views of a host's window have in common: a place in the tree of views.
class HeadlessViewNode {
public:
    virtual ~HeadlessViewNode() = default;
    virtual NSView& view() = 0;

    /// Makes the views that are described as being in this one.
    void addViews(const std::vector<ViewDescription>& views);

    /// Calls it for this view and for all in it.
    void visit(const std::function<void(NSView&)>& visitor);

protected:
    HeadlessViewNode(const ViewDescription& description, const std::weak_ptr<NSWindow>& window,
                     const CommandHandler& handler)
        : frame_(description.frame),
          contextMenu_(description.contextMenu),
          takesKeys_(description.takesKeys),
          window_(window),
          handler_(handler) {}

    NSViewRef hit(NSPoint point);
    NSMenuRef makeContextMenu() const;
    NSViewRef above() const;
    bool takesKeys() const { return takesKeys_; }
    std::shared_ptr<NSWindow> ownWindow() const { return window_.lock(); }

private:
    NSRect frame_;
    std::optional<ContextMenuDescription> contextMenu_;
    bool takesKeys_;
    std::weak_ptr<NSWindow> window_;
    CommandHandler handler_;
    std::vector<std::shared_ptr<NSView>> views_;
    HeadlessViewNode* above_ = nullptr;
};

/// A view of a host's window, of one of the layer's kinds.
template <class Kind>
class HeadlessViewOf : public Kind, public HeadlessViewNode {
public:
    HeadlessViewOf(const ViewDescription& description, const std::weak_ptr<NSWindow>& window,
                   const CommandHandler& handler)
        : HeadlessViewNode(description, window, handler) {}

    NSView& view() override { return *this; }
    NSViewRef hitTest(NSPoint point) override { return hit(point); }
    NSMenuRef menuForEvent(const NSEventRef& /*event*/) override { return makeContextMenu(); }
    std::shared_ptr<NSWindow> window() override { return ownWindow(); }
    NSViewRef superview() override { return above(); }
};

using HeadlessView = HeadlessViewOf<NSView>;

}  // namespace velmora
