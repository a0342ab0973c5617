#include "platform/appkit/controls/NSContentView.h"

#include <algorithm>

namespace velmora {

namespace {

/// The control that has this place, or null for a label.
NSControlRef controlOf(const NSContentView::Cell& cell) {
    if (const auto* row = std::get_if<NSContentView::MatrixRow>(&cell)) return row->matrix;
    const auto* control = std::get_if<NSControlRef>(&cell);
    return control ? *control : nullptr;
}

}  // namespace

NSContentView::NSContentView(NSWindow& panel, std::function<void()> changed, std::vector<Row> rows)
    : panel_(&panel), changed_(std::move(changed)), rows_(std::move(rows)) {
    for (const NSControlRef& control : subviews()) control->superview_ = this;
}

NSContentView::~NSContentView() {
    for (const NSControlRef& control : subviews()) control->superview_ = nullptr;
}

std::vector<NSControlRef> NSContentView::subviews() const {
    std::vector<NSControlRef> found;
    for (const Row& row : rows_) {
        for (const Cell& cell : row) {
            const NSControlRef control = controlOf(cell);
            const bool isNew =
                control && std::find(found.begin(), found.end(), control) == found.end();
            if (isNew) found.push_back(control);
        }
    }
    return found;
}

NSControlRef NSContentView::viewWithTag(int tag) const {
    for (const NSControlRef& control : subviews()) {
        if (control->tag() == tag) return control;
    }
    return nullptr;
}

void NSContentView::addSubview(const NSControlRef& control) {
    control->removeFromSuperviewWithoutNeedingDisplay();
    control->superview_ = this;
    rows_.push_back({control});
    changed_();
}

void NSContentView::remove(NSControl& control) {
    const auto kept = std::static_pointer_cast<NSControl>(control.shared_from_this());
    control.superview_ = nullptr;
    for (Row& row : rows_) {
        std::erase_if(row, [&](const Cell& cell) { return controlOf(cell) == kept; });
    }
    changed_();
}

void NSContentView::close() {
    panel_ = nullptr;
    changed_ = [] {};
    for (const NSControlRef& control : subviews()) {
        control->removeFromSuperviewWithoutNeedingDisplay();
    }
}

bool NSContentView::performKeyEquivalent(const NSEventRef& event) {
    const std::vector<NSControlRef> controls = subviews();
    return std::any_of(controls.begin(), controls.end(), [&](const NSControlRef& control) {
        return control->performKeyEquivalent(event);
    });
}

std::shared_ptr<NSWindow> NSContentView::window() {
    return panel_ ? std::static_pointer_cast<NSWindow>(panel_->shared_from_this()) : nullptr;
}

}  // namespace velmora
