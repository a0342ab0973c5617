#pragma once

#include <QPointer>
#include <QWidget>
#include <functional>
#include <string>
#include <vector>

#include "platform/appkit/controls/NSControl.h"
#include "platform/appkit/controls/NSMatrix.h"

namespace velmora {

/// Makes the widgets that show a panel's controls, and knows which shows which.
class QtControls {
public:
    /// What the user does counts while `takesInput()`.
    explicit QtControls(std::function<bool()> takesInput) : takesInput_(std::move(takesInput)) {}
    /// Lets go of all; the widgets are their parents'.
    ~QtControls();
    QtControls(const QtControls&) = delete;
    QtControls& operator=(const QtControls&) = delete;

    /// Made, in this parent, when the control is asked for first; a matrix as a whole.
    QWidget* widgetOf(const NSControlRef& control, QWidget& parent);
    /// A column each.
    std::vector<QWidget*> matrixRow(const NSMatrixRef& matrix, int row, QWidget& parent);

    /// Null when nothing shows it.
    QWidget* existingWidgetOf(const NSControlRef& control) const;
    /// The control that the widget or one of its parents shows; null for another widget.
    NSControlRef controlOf(const QWidget* widget) const;
    /// The first field in which the user can type, else the first table, else the default button;
    /// null without one.
    QWidget* firstForKeys() const;

    /// Lets go of all others. A widget that is hidden by that may be in the middle of an event.
    void keepOnly(const std::vector<NSControlRef>& controls);

    /// The user is done with the field that has the keys.
    static void endEditing(const QWidget& dialog);
    /// Clicks the button that the key clicks; false without one.
    bool clickButtonWithKey(const std::string& key) const;

private:
    struct Shown {
        NSControlRef control;
        QPointer<QObject> peer;
        std::vector<QPointer<QWidget>> widgets;
        std::function<void()> letGo;
    };

    Shown& shown(const NSControlRef& control, QWidget& parent);
    Shown make(const NSControlRef& control, QWidget& parent);
    template <class Widget, class Control>
    Shown makeKind(std::shared_ptr<Control> control, QWidget& parent);

    std::function<bool()> takesInput_;
    std::vector<Shown> shown_;
};

}  // namespace velmora
