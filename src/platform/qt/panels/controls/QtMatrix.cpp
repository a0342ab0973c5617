#include "platform/qt/panels/controls/QtMatrix.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QRadioButton>
#include <QToolButton>

#include "platform/qt/base/QtGuard.h"
#include "platform/qt/panels/controls/QtCellIcon.h"
#include "platform/qt/panels/controls/QtLabel.h"

namespace velmora {

QtMatrix::QtMatrix(std::shared_ptr<NSMatrix> matrix, std::function<bool()> takesInput,
                   QWidget* parent)
    : QObject(parent),
      matrix_(std::move(matrix)),
      takesInput_(std::move(takesInput)),
      parent_(parent) {
    group_.setExclusive(false);
    matrix_->setPeer(this);
}

QtMatrix::~QtMatrix() {
    letGo();
}

void QtMatrix::letGo() {
    if (matrix_ && matrix_->peer() == this) matrix_->setPeer(nullptr);
    matrix_ = nullptr;
}

std::vector<QWidget*> QtMatrix::row(int row) {
    std::vector<QWidget*> widgets;
    for (const Place& place : places_) {
        if (place.row == row && place.widget) widgets.push_back(place.widget);
    }
    if (!widgets.empty() || !matrix_) return widgets;
    for (int column = 0; column < matrix_->numberOfColumns(); ++column) {
        const NSCellRef cell = matrix_->cellAtRow_column(row, column);
        if (!cell) break;
        QWidget* widget = makeWidget(cell, row, column);
        places_.push_back({widget, cell, row});
        widgets.push_back(widget);
    }
    needsDisplay();
    return widgets;
}

QWidget* QtMatrix::whole() {
    if (whole_ || !matrix_) return whole_;
    whole_ = new QWidget(parent_);
    auto* grid = new QGridLayout(whole_);
    grid->setContentsMargins(0, 0, 0, 0);
    for (int index = 0; index < matrix_->numberOfRows(); ++index) {
        int column = 0;
        for (QWidget* widget : row(index)) grid->addWidget(widget, index, column++);
    }
    grid->setColumnStretch(matrix_->numberOfColumns(), 1);
    return whole_;
}

QWidget* QtMatrix::makeWidget(const NSCellRef& cell, int row, int column) {
    if (auto text = std::dynamic_pointer_cast<NSTextFieldCell>(cell)) {
        return new QtLabel(std::move(text), parent_);
    }
    const auto buttonCell = std::dynamic_pointer_cast<NSButtonCell>(cell);
    if (!buttonCell) return new QWidget(parent_);
    QAbstractButton* button = makeButton(buttonCell);
    // In a group of any kind Tab goes to one button only.
    if (matrix_->mode() == NSRadioModeMatrix) group_.addButton(button);
    const QString title = QString::fromStdString(buttonCell->title());
    button->setAccessibleName(title);
    if (buttonCell->imagePosition() == NSImageOnly) button->setToolTip(title);
    connect(button, &QAbstractButton::clicked, this, [this, row, column] { clicked(row, column); });
    return button;
}

QAbstractButton* QtMatrix::makeButton(const NSButtonCellRef& cell) {
    if (cell->image() || cell->imageSize()) {
        auto* button = new QToolButton(parent_);
        button->setCheckable(true);
        button->setAutoRaise(true);
        button->setIcon(cellIcon(cell));
        return button;
    }
    if (matrix_->mode() == NSRadioModeMatrix) return new QRadioButton(parent_);
    return new QCheckBox(parent_);
}

void QtMatrix::clicked(int row, int column) {
    const auto kept = matrix_;
    const QPointer<QtMatrix> self(this);
    if (kept && takesInput_()) {
        guarded("A click in a matrix", [&] { kept->userClicked(row, column); });
    }
    // The click has switched the widgets, whatever became of the cells.
    if (self) self->needsDisplay();
}

void QtMatrix::show(const Place& place) const {
    if (auto* label = dynamic_cast<QtLabel*>(place.widget.data())) return label->showCell();
    auto* button = qobject_cast<QAbstractButton*>(place.widget);
    const auto* cell = dynamic_cast<const NSButtonCell*>(place.cell.get());
    if (!button || !cell) return;
    QString title = QString::fromStdString(cell->title());
    title.replace(QLatin1Char('&'), QLatin1String("&&"));
    if (cell->imagePosition() == NSImageOnly) title.clear();
    if (button->text() != title) button->setText(title);
    button->setEnabled(matrix_->isEnabled() && cell->isEnabled());
    button->setChecked(cell->state() != NSOffState);
    button->setVisible(!cell->isTransparent());
    if (!qobject_cast<QToolButton*>(button)) return;
    const QSize size = cellIconSize(*cell);
    if (button->iconSize() != size) button->setIconSize(size);
    button->update();
}

void QtMatrix::needsDisplay() {
    if (!matrix_) return;
    // One that is on in an exclusive group could not be switched off.
    group_.setExclusive(false);
    for (const Place& place : places_) show(place);
    if (matrix_->mode() != NSRadioModeMatrix) return;
    group_.setExclusive(true);
    const QAbstractButton* chosen = group_.checkedButton();
    const auto buttons = group_.buttons();
    for (QAbstractButton* button : buttons) {
        const bool takesTab = !chosen || button == chosen;
        const int policy = button->focusPolicy() & ~Qt::TabFocus;
        button->setFocusPolicy(
            static_cast<Qt::FocusPolicy>(takesTab ? policy | Qt::TabFocus : policy));
    }
}

}  // namespace velmora
