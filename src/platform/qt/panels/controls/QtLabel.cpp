#include "platform/qt/panels/controls/QtLabel.h"

#include <QEvent>

#include "platform/qt/panels/controls/QtTextColor.h"

namespace velmora {

namespace {

Qt::Alignment alignmentOf(const NSCell& cell) {
    switch (cell.alignment()) {
        case NSRightTextAlignment: return Qt::AlignRight | Qt::AlignVCenter;
        case NSCenterTextAlignment: return Qt::AlignCenter;
        default: return Qt::AlignLeft | Qt::AlignVCenter;
    }
}

}  // namespace

QtLabel::QtLabel(NSTextFieldCellRef cell, QWidget* parent)
    : QLabel(parent), cell_(std::move(cell)) {
    setTextFormat(Qt::PlainText);
    showCell();
}

void QtLabel::showCell() {
    const QString text = QString::fromStdString(cell_->stringValue());
    if (this->text() != text) setText(text);
    setAlignment(alignmentOf(*cell_));
    showColor();
}

void QtLabel::showColor() {
    // Its own palette may hold the colour of before.
    const QPalette& around = parentWidget()->palette();
    const QColor color = textColorOn(around, cell_->textColor());
    if (palette().color(QPalette::Active, QPalette::WindowText) == color) return;
    QPalette own = around;
    for (const auto group : {QPalette::Active, QPalette::Inactive}) {
        own.setColor(group, QPalette::WindowText, color);
    }
    setPalette(own);
}

void QtLabel::changeEvent(QEvent* event) {
    QLabel::changeEvent(event);
    const bool ofColors =
        event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange;
    if (ofColors && cell_) showColor();
}

QtTextLabel::QtTextLabel(std::shared_ptr<NSTextField> field,
                         const std::function<bool()>& /*takesInput*/, QWidget* parent)
    : QtLabel(std::static_pointer_cast<NSTextFieldCell>(field->cell()), parent),
      field_(std::move(field)) {
    field_->setPeer(this);
}

QtTextLabel::~QtTextLabel() {
    letGo();
}

void QtTextLabel::letGo() {
    if (field_ && field_->peer() == this) field_->setPeer(nullptr);
    field_ = nullptr;
}

}  // namespace velmora
