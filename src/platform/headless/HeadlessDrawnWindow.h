#pragma once

#include "platform/appkit/NSDrawnWindow.h"

namespace velmora {

class HeadlessDesktop;

/// A window of ours that is only drawn: keeps what it shows. The window owns it; the desktop must
/// outlive it.
class HeadlessDrawnWindow final : public DrawnWindowPeer {
public:
    explicit HeadlessDrawnWindow(HeadlessDesktop& desktop) : desktop_(desktop) {}
    ~HeadlessDrawnWindow() override { orderOut(); }
    HeadlessDrawnWindow(const HeadlessDrawnWindow&) = delete;
    HeadlessDrawnWindow& operator=(const HeadlessDrawnWindow&) = delete;

    void setFrame(NSRect frame) override { frame_ = frame; }
    void setAlphaValue(float alpha) override { alpha_ = alpha; }
    void orderFront() override;
    void orderOut() override;
    void show(DisplayList list) override { list_ = std::move(list); }

    NSRect frame() const { return frame_; }
    float alphaValue() const { return alpha_; }
    const DisplayList& list() const { return list_; }

private:
    HeadlessDesktop& desktop_;
    NSRect frame_;
    float alpha_ = 1;
    DisplayList list_;
};

}  // namespace velmora
