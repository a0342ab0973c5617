#include "gestures/VelmoraScrollViewAdditions.h"

#include "platform/runtime/Class.h"

namespace velmora {

namespace {

const Category category(NSScrollView::classObject(), {methodFor<&velmoraScroll>("velmoraScroll:")});

}  // namespace

void velmoraScroll(NSScrollView& scrollView, const Id& event) {
    const auto* scroll = dynamic_cast<const NSEvent*>(event.get());
    const std::shared_ptr<NSClipView> clipView = scrollView.contentView();
    if (!scroll || !clipView) return;
    NSPoint origin = scrollView.documentVisibleRect().origin;
    origin.x -= scroll->deltaX() * scrollView.horizontalLineScroll();
    origin.y -= scroll->deltaY() * scrollView.verticalLineScroll();
    origin = clipView->constrainScrollPoint(origin);
    const bool copied = clipView->copiesOnScroll();
    clipView->setCopiesOnScroll(false);
    clipView->scrollToPoint(origin);
    clipView->setCopiesOnScroll(copied);
    scrollView.reflectScrolledClipView(*clipView);
}

}  // namespace velmora
