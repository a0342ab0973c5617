#pragma once

#include <functional>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "platform/appkit/NSWindow.h"
#include "platform/appkit/controls/NSControl.h"
#include "platform/appkit/controls/NSMatrix.h"
#include "platform/appkit/controls/NSTextField.h"

namespace velmora {

/// What a panel shows: rows of labels and controls. The panel owns it.
class NSContentView final : public NSView {
public:
    /// A text that is only shown.
    struct Label {
        std::string text;
        /// What is said instead of it; "" for the text itself.
        std::string spoken = {};
    };
    /// One row of a matrix, each of its cells in a place of its own, so that the matrix lines up
    /// with what else is in the panel's rows.
    struct MatrixRow {
        MatrixRow(NSMatrixRef shown, int index) : matrix(std::move(shown)), row(index) {}
        NSMatrixRef matrix;
        int row;
    };
    using Cell = std::variant<Label, NSControlRef, MatrixRow>;
    using Row = std::vector<Cell>;

    /// `changed` is called when controls come or go, as long as the panel lives.
    NSContentView(NSWindow& panel, std::function<void()> changed, std::vector<Row> rows);
    ~NSContentView() override;

    /// The place of a row does not change; one whose only control was removed is empty.
    const std::vector<Row>& rows() const { return rows_; }
    /// A matrix whose rows are shown one by one comes once.
    std::vector<NSControlRef> subviews() const;
    /// The first control with the tag, or null.
    NSControlRef viewWithTag(int tag) const;

    /// Adds a row with the control at the end; takes it out of where it was before.
    void addSubview(const NSControlRef& control);

    // It is none of the views that a gesture can start over.
    NSViewRef hitTest(NSPoint /*point*/) override { return nullptr; }
    std::shared_ptr<NSMenu> menuForEvent(const NSEventRef& /*event*/) override { return nullptr; }
    /// Offers it to the controls, in their order.
    bool performKeyEquivalent(const NSEventRef& event) override;
    /// Null once the panel is gone.
    std::shared_ptr<NSWindow> window() override;

private:
    friend class NSControl;
    friend class NSPanel;
    void remove(NSControl& control);
    /// The panel is going: all controls are removed.
    void close();

    NSWindow* panel_;
    std::function<void()> changed_;
    std::vector<Row> rows_;
};

}  // namespace velmora
