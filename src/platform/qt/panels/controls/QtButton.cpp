#include "platform/qt/panels/controls/QtButton.h"

#include <QPaintEvent>
#include <QScopedValueRollback>

#include "platform/qt/base/QtCoordinates.h"
#include "platform/qt/base/QtGuard.h"
#include "platform/qt/panels/controls/QtCellIcon.h"

namespace velmora {

QtButton::QtButton(std::shared_ptr<NSButton> button, std::function<bool()> takesInput,
                   QWidget* parent)
    : QPushButton(parent), button_(std::move(button)) {
    // Return belongs to the field that is typed in.
    setAutoDefault(false);
    QSizePolicy policy = sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    setSizePolicy(policy);
    button_->setPeer(this);
    needsDisplay();
    connect(this, &QPushButton::clicked, this, [this, takesInput = std::move(takesInput)] {
        const auto kept = button_;
        if (!kept || !takesInput()) return;
        guarded("A click on a button", [&] { kept->performClick(nullptr); });
    });
}

QtButton::~QtButton() {
    letGo();
}

void QtButton::letGo() {
    if (button_ && button_->peer() == this) button_->setPeer(nullptr);
    button_ = nullptr;
}

void QtButton::draw() {
    if (painting_) QPushButton::paintEvent(painting_);
}

void QtButton::needsDisplay() {
    if (!button_) return;
    const NSCellImagePosition position = button_->imagePosition();
    const QString title = QString::fromStdString(button_->title());
    QString shown = position == NSImageOnly ? QString() : title;
    shown.replace(QLatin1Char('&'), QLatin1String("&&"));
    if (text() != shown) setText(shown);
    if (accessibleName() != title) setAccessibleName(title);
    setFlat(position == NSImageOnly);
    setEnabled(button_->isEnabled());
    const bool isDefaultButton = button_->keyEquivalent() == "\r";
    if (isDefault() != isDefaultButton) setDefault(isDefaultButton);
    setVisible(!button_->isTransparent());
    if (position == NSNoImage || !button_->image()) return setIcon(QIcon());
    const QSize size = cellIconSize(*button_->cell());
    if (iconSize() != size) setIconSize(size);
    // The one icon shows whatever picture the button has, so a new picture moves nothing.
    if (icon().isNull()) setIcon(cellIcon(button_->cell()));
    update();
}

void QtButton::paintEvent(QPaintEvent* event) {
    const auto kept = button_;
    if (!kept) return QPushButton::paintEvent(event);
    const QScopedValueRollback<QPaintEvent*> painting(painting_, event);
    guarded("Drawing a button", [&] { kept->drawRect(viewRect(event->rect(), height())); });
}

}  // namespace velmora
