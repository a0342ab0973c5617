#include "platform/qt/panels/QtPanelLayout.h"

#include <QAbstractButton>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <algorithm>

#include "platform/appkit/controls/NSButton.h"
#include "platform/appkit/controls/NSSlider.h"
#include "platform/appkit/controls/NSTableView.h"
#include "platform/appkit/controls/NSTextView.h"
#include "platform/qt/panels/QtControls.h"

namespace velmora {

namespace {

/// How many letters a text on a row of its own has at the most before it goes on in the next line,
/// and how many a field has room for that nothing else sizes.
constexpr int lineLength = 64;
constexpr int fieldLength = 28;
constexpr int restOfRow = -1;

const NSControlRef* controlIn(const NSContentView::Cell& cell) {
    return std::get_if<NSControlRef>(&cell);
}

template <class Kind>
bool holds(const NSContentView::Cell& cell) {
    const NSControlRef* control = controlIn(cell);
    return control && dynamic_cast<const Kind*>(control->get());
}

bool isTall(const NSContentView::Cell& cell) {
    return holds<NSTableView>(cell) || holds<NSTextView>(cell);
}

bool isPushButton(const NSContentView::Cell& cell) {
    if (!holds<NSButton>(cell)) return false;
    const auto& button = static_cast<const NSButton&>(**controlIn(cell));
    return button.buttonType() == NSMomentaryPushInButton;
}

bool isLabel(const NSContentView::Cell& cell) {
    return std::holds_alternative<NSContentView::Label>(cell);
}

template <class Condition>
bool all(const NSContentView::Row& row, Condition condition) {
    return !row.empty() && std::all_of(row.begin(), row.end(), condition);
}

bool hasKey(const NSContentView::Cell& cell) {
    return !static_cast<const NSButton&>(**controlIn(cell)).keyEquivalent().empty();
}

int columnsOf(const NSContentView::Row& row) {
    int columns = 0;
    for (const NSContentView::Cell& cell : row) {
        const auto* matrix = std::get_if<NSContentView::MatrixRow>(&cell);
        columns += matrix ? matrix->matrix->numberOfColumns() : 1;
    }
    return columns;
}

/// Whether the widget wants all of its place; the others are as large as what they show.
bool fills(const QWidget& widget) {
    return (widget.sizePolicy().expandingDirections() & Qt::Horizontal) != 0;
}

}  // namespace

void QtPanelLayout::arrange(const std::vector<Row>& rows, const QString& title) {
    title_ = title;
    for (const auto& label : labels_) delete label;
    labels_.clear();
    delete body_->layout();
    grid_ = new QGridLayout(body_);
    columns_ = 1;
    hasWideColumn_ = false;
    for (const Row& row : rows) columns_ = std::max(columns_, columnsOf(row));
    const bool endsInButtons = !rows.empty() && all(rows.back(), isPushButton);
    bool hasTallRow = false;
    int index = 0;
    for (const Row& row : rows) {
        const bool isLast = &row == &rows.back();
        if (all(row, isPushButton)) {
            // What nothing wants of the height lies above the buttons.
            addButtonRow(row, isLast ? index + 1 : index, isLast);
        } else if (std::any_of(row.begin(), row.end(), isTall)) {
            addBoxRow(row, index);
            hasTallRow = true;
        } else {
            addRow(row, index);
        }
        ++index;
    }
    if (!hasWideColumn_) grid_->setColumnStretch(columns_, 1);
    if (!hasTallRow) grid_->setRowStretch(endsInButtons ? index - 1 : index, 1);
    const QMargins margins = grid_->contentsMargins();
    const int room = grid_->sizeHint().width() - margins.left() - margins.right();
    for (const auto& label : labels_) {
        if (label->wordWrap()) label->setMinimumSize(room, label->heightForWidth(room));
    }
}

void QtPanelLayout::place(QWidget& widget, int row, int column, bool isLast) {
    const bool isField = qobject_cast<QLineEdit*>(&widget);
    const bool hasRest = isLast && column + 1 < columns_;
    const auto* label = qobject_cast<QLabel*>(&widget);
    const bool wantsRest = isLast && (fills(widget) || (label && label->wordWrap()));
    if (isField && !hasRest) {
        widget.setMinimumWidth(widget.fontMetrics().averageCharWidth() * fieldLength);
    }
    if (isField && !isLast) {
        grid_->addWidget(&widget, row, column);
        grid_->setColumnStretch(column, 1);
        hasWideColumn_ = true;
    } else if (wantsRest && !(isField && hasRest)) {
        grid_->addWidget(&widget, row, column, 1, restOfRow);
    } else if (hasRest) {
        grid_->addWidget(&widget, row, column, 1, restOfRow, Qt::AlignLeft | Qt::AlignVCenter);
    } else {
        const auto* button = qobject_cast<QAbstractButton*>(&widget);
        const bool isBox = button && button->text().isEmpty();
        grid_->addWidget(&widget, row, column, isBox ? Qt::AlignCenter : Qt::Alignment());
    }
}

void QtPanelLayout::addRow(const Row& cells, int row) {
    const bool isHeader = cells.size() > 1 && all(cells, isLabel);
    QLabel* label = nullptr;
    int column = 0;
    for (const NSContentView::Cell& cell : cells) {
        const bool isLast = &cell == &cells.back();
        if (const auto* text = std::get_if<NSContentView::Label>(&cell)) {
            label = makeLabel(*text, cells.size() == 1);
            if (isHeader && column > 0) label->setAlignment(Qt::AlignCenter);
            place(*label, row, column++, isLast);
        } else if (const auto* part = std::get_if<NSContentView::MatrixRow>(&cell)) {
            const auto widgets = controls_->matrixRow(part->matrix, part->row, *body_);
            for (QWidget* widget : widgets) {
                if (auto* title = qobject_cast<QLabel*>(widget)) {
                    label = title;
                } else {
                    nameCell(*widget, label);
                }
                place(*widget, row, column++, isLast && widget == widgets.back());
            }
        } else {
            QWidget* widget = controls_->widgetOf(*controlIn(cell), *body_);
            const auto buttons = widget->findChildren<QAbstractButton*>();
            for (QAbstractButton* button : buttons) nameCell(*button, label);
            name(*widget, label);
            giveKey(*widget, label);
            place(*widget, row, column++, isLast);
        }
    }
}

void QtPanelLayout::addBoxRow(const Row& cells, int row) {
    auto* box = new QHBoxLayout;
    QLabel* label = nullptr;
    for (const NSContentView::Cell& cell : cells) {
        if (const auto* text = std::get_if<NSContentView::Label>(&cell)) {
            label = makeLabel(*text, false);
            box->addWidget(label, 0, Qt::AlignTop);
        } else if (const auto* control = controlIn(cell)) {
            QWidget* widget = controls_->widgetOf(*control, *body_);
            name(*widget, label);
            giveKey(*widget, label);
            box->addWidget(widget, holds<NSTextView>(cell) ? 2 : isTall(cell) ? 1 : 0);
        }
    }
    grid_->addLayout(box, row, 0, 1, restOfRow);
    grid_->setRowStretch(row, 1);
}

void QtPanelLayout::addButtonRow(const Row& cells, int row, bool isLast) {
    auto* box = new QHBoxLayout;
    const auto firstRight = isLast ? std::find_if(cells.begin(), cells.end(), hasKey) : cells.end();
    const bool allRight = isLast && firstRight == cells.end();
    if (allRight) box->addStretch();
    for (auto cell = cells.begin(); cell != cells.end(); ++cell) {
        if (cell == firstRight) box->addStretch();
        box->addWidget(controls_->widgetOf(*controlIn(*cell), *body_));
    }
    if (!isLast) box->addStretch();
    grid_->addLayout(box, row, 0, 1, restOfRow);
}

QLabel* QtPanelLayout::makeLabel(const NSContentView::Label& label, bool isAlone) {
    auto* widget = new QLabel(QString::fromStdString(label.text), body_);
    widget->setTextFormat(Qt::PlainText);
    if (!label.spoken.empty()) widget->setAccessibleName(QString::fromStdString(label.spoken));
    labels_.emplace_back(widget);
    const int longest = widget->fontMetrics().averageCharWidth() * lineLength;
    if (isAlone && widget->sizeHint().width() > longest) {
        widget->setWordWrap(true);
        widget->setMinimumWidth(longest);
    }
    return widget;
}

void QtPanelLayout::name(QWidget& widget, const QLabel* label) const {
    QString text = label ? label->text() : QString();
    if (text.endsWith(QLatin1Char(':'))) text.chop(1);
    if (text.isEmpty()) text = title_;
    if (widget.accessibleName().isEmpty()) widget.setAccessibleName(text);
}

void QtPanelLayout::nameCell(QWidget& widget, const QLabel* label) {
    QString text = label ? label->text() : QString();
    if (text.endsWith(QLatin1Char(':'))) text.chop(1);
    text += QLatin1String(", ");
    const QString own = widget.accessibleName();
    if (label && !own.startsWith(text)) widget.setAccessibleName(text + own);
}

void QtPanelLayout::giveKey(QWidget& widget, QLabel* label) {
    if (!label || label->buddy() || widget.focusPolicy() == Qt::NoFocus) return;
    // With a buddy, the label takes an ampersand for the mark of its key.
    label->setText(label->text().replace(QLatin1Char('&'), QLatin1String("&&")));
    label->setBuddy(&widget);
}

}  // namespace velmora
