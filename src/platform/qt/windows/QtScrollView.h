#pragma once

#include "platform/appkit/NSScrollView.h"
#include "platform/qt/windows/QtView.h"

class QAbstractScrollArea;

namespace velmora {

/// A scroll area of the host as a scroll view. The document's coordinates count what the scroll
/// bars count (pixels, lines, items), from the value where each stands, so that they are exact
/// however long a bar is; they move with it. A line is a bar's single step.
class QtScrollView final : public QtViewOf<NSScrollView> {
public:
    /// Whether the widget is a scroll area with something to scroll.
    static bool canScroll(const QWidget& widget);

    using QtViewOf::QtViewOf;

    bool acceptsFirstResponder() override { return widget() && widget()->isEnabled(); }
    std::shared_ptr<NSClipView> contentView() override;
    float horizontalLineScroll() override;
    float verticalLineScroll() override;
    NSRect documentVisibleRect() override;
    /// The bars are what is scrolled.
    void reflectScrolledClipView(NSClipView& /*clipView*/) override {}

private:
    class ClipView;
    QAbstractScrollArea* area() const;
};

}  // namespace velmora
