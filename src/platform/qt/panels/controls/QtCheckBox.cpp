#include "platform/qt/panels/controls/QtCheckBox.h"

#include <QPointer>

#include "platform/qt/base/QtGuard.h"

namespace velmora {

QtCheckBox::QtCheckBox(std::shared_ptr<NSButton> button, std::function<bool()> takesInput,
                       QWidget* parent)
    : QCheckBox(parent), button_(std::move(button)) {
    QSizePolicy policy = sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    setSizePolicy(policy);
    button_->setPeer(this);
    needsDisplay();
    connect(this, &QCheckBox::clicked, this, [this, takesInput = std::move(takesInput)] {
        const auto kept = button_;
        const QPointer<QtCheckBox> self(this);
        if (kept && takesInput()) {
            guarded("A click on a check box", [&] { kept->performClick(nullptr); });
        }
        // The click has switched the widget, whatever became of the button.
        if (self) self->needsDisplay();
    });
}

QtCheckBox::~QtCheckBox() {
    letGo();
}

void QtCheckBox::letGo() {
    if (button_ && button_->peer() == this) button_->setPeer(nullptr);
    button_ = nullptr;
}

void QtCheckBox::needsDisplay() {
    if (!button_) return;
    QString title = QString::fromStdString(button_->title());
    if (accessibleName() != title) setAccessibleName(title);
    title.replace(QLatin1Char('&'), QLatin1String("&&"));
    if (text() != title) setText(title);
    setEnabled(button_->isEnabled());
    setVisible(!button_->isTransparent());
    setChecked(button_->state() != NSOffState);
}

}  // namespace velmora
