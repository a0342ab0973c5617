#include "platform/qt/panels/QtControls.h"

#include <QApplication>
#include <algorithm>

#include "platform/appkit/controls/NSTableView.h"
#include "platform/qt/base/QtGuard.h"
#include "platform/qt/panels/controls/QtButton.h"
#include "platform/qt/panels/controls/QtCellView.h"
#include "platform/qt/panels/controls/QtCheckBox.h"
#include "platform/qt/panels/controls/QtLabel.h"
#include "platform/qt/panels/controls/QtMatrix.h"
#include "platform/qt/panels/controls/QtSlider.h"
#include "platform/qt/panels/controls/QtTextArea.h"
#include "platform/qt/panels/controls/QtTextField.h"
#include "platform/qt/panels/table/QtTable.h"

namespace velmora {

QtControls::~QtControls() {
    for (const Shown& one : shown_) {
        if (one.peer) one.letGo();
    }
}

template <class Widget, class Control>
QtControls::Shown QtControls::makeKind(std::shared_ptr<Control> control, QWidget& parent) {
    auto* made = new Widget(control, takesInput_, &parent);
    Shown shown{std::move(control), made, {}, [made] { made->letGo(); }};
    if constexpr (std::is_base_of_v<QWidget, Widget>) shown.widgets.emplace_back(made);
    return shown;
}

QtControls::Shown QtControls::make(const NSControlRef& control, QWidget& parent) {
    if (auto button = std::dynamic_pointer_cast<NSButton>(control)) {
        const bool switches = button->buttonType() == NSSwitchButton;
        return switches ? makeKind<QtCheckBox>(std::move(button), parent)
                        : makeKind<QtButton>(std::move(button), parent);
    }
    if (auto field = std::dynamic_pointer_cast<NSTextField>(control)) {
        return field->isEditable() ? makeKind<QtTextField>(std::move(field), parent)
                                   : makeKind<QtTextLabel>(std::move(field), parent);
    }
    if (auto table = std::dynamic_pointer_cast<NSTableView>(control)) {
        return makeKind<QtTable>(std::move(table), parent);
    }
    if (auto matrix = std::dynamic_pointer_cast<NSMatrix>(control)) {
        return makeKind<QtMatrix>(std::move(matrix), parent);
    }
    if (auto area = std::dynamic_pointer_cast<NSTextView>(control)) {
        return makeKind<QtTextArea>(std::move(area), parent);
    }
    if (auto slider = std::dynamic_pointer_cast<NSSlider>(control)) {
        return makeKind<QtSlider>(std::move(slider), parent);
    }
    return makeKind<QtCellView>(control, parent);
}

QtControls::Shown& QtControls::shown(const NSControlRef& control, QWidget& parent) {
    for (Shown& one : shown_) {
        if (one.control == control && one.peer) return one;
    }
    std::erase_if(shown_, [&](const Shown& one) { return one.control == control; });
    shown_.push_back(make(control, parent));
    return shown_.back();
}

QWidget* QtControls::widgetOf(const NSControlRef& control, QWidget& parent) {
    Shown& one = shown(control, parent);
    auto* matrix = dynamic_cast<QtMatrix*>(one.peer.data());
    if (!matrix) return one.widgets.front();
    QWidget* whole = matrix->whole();
    if (one.widgets.empty()) one.widgets.emplace_back(whole);
    return whole;
}

std::vector<QWidget*> QtControls::matrixRow(const NSMatrixRef& matrix, int row, QWidget& parent) {
    Shown& one = shown(matrix, parent);
    auto widgets = static_cast<QtMatrix&>(*one.peer).row(row);
    for (QWidget* widget : widgets) {
        const auto& known = one.widgets;
        if (std::find(known.begin(), known.end(), widget) == known.end()) {
            one.widgets.emplace_back(widget);
        }
    }
    return widgets;
}

QWidget* QtControls::existingWidgetOf(const NSControlRef& control) const {
    for (const Shown& one : shown_) {
        if (one.control == control && !one.widgets.empty()) return one.widgets.front();
    }
    return nullptr;
}

NSControlRef QtControls::controlOf(const QWidget* widget) const {
    for (; widget; widget = widget->parentWidget()) {
        for (const Shown& one : shown_) {
            const auto& known = one.widgets;
            if (std::find(known.begin(), known.end(), widget) != known.end()) return one.control;
        }
    }
    return nullptr;
}

QWidget* QtControls::firstForKeys() const {
    QWidget* table = nullptr;
    QWidget* button = nullptr;
    for (const Shown& one : shown_) {
        QWidget* widget = one.widgets.empty() ? nullptr : one.widgets.front().data();
        if (dynamic_cast<QtTextField*>(widget)) return widget;
        if (!table && dynamic_cast<NSTableView*>(one.control.get())) table = widget;
        const auto* push = dynamic_cast<QtButton*>(widget);
        if (push && push->isDefault()) button = widget;
    }
    return table ? table : button;
}

void QtControls::keepOnly(const std::vector<NSControlRef>& controls) {
    std::erase_if(shown_, [&](const Shown& one) {
        if (std::find(controls.begin(), controls.end(), one.control) != controls.end()) {
            return false;
        }
        if (!one.peer) return true;
        one.letGo();
        for (const auto& widget : one.widgets) {
            if (!widget) continue;
            widget->hide();
            widget->deleteLater();
        }
        one.peer->deleteLater();
        return true;
    });
}

void QtControls::endEditing(const QWidget& dialog) {
    auto* field = dynamic_cast<QtTextField*>(dialog.focusWidget());
    if (field) field->endEditing();
}

bool QtControls::clickButtonWithKey(const std::string& key) const {
    for (const Shown& one : shown_) {
        const auto button = std::dynamic_pointer_cast<NSButton>(one.control);
        if (!button || button->keyEquivalent() != key || !button->isEnabled()) continue;
        if (takesInput_()) guarded("A button's key", [&] { button->performClick(nullptr); });
        return true;
    }
    return false;
}

}  // namespace velmora
