#include "platform/qt/panels/table/QtTableCells.h"

#include <QApplication>
#include <QLineEdit>
#include <QPainter>

#include "platform/appkit/controls/NSPopUpButtonCell.h"
#include "platform/qt/base/QtDrawing.h"
#include "platform/qt/base/QtFonts.h"
#include "platform/qt/base/QtGuard.h"
#include "platform/qt/base/QtImages.h"
#include "platform/qt/panels/controls/QtCell.h"

namespace velmora {

namespace {

/// How strongly the box is seen in which a picture would stand for the state that is off.
constexpr qreal faint = 0.7;

/// The property of a field that has the text with which it began.
constexpr const char* firstText = "_velmora_first_text";

class PainterState {
public:
    explicit PainterState(QPainter& painter) : painter_(painter) { painter_.save(); }
    ~PainterState() { painter_.restore(); }
    PainterState(const PainterState&) = delete;
    PainterState& operator=(const PainterState&) = delete;

private:
    QPainter& painter_;
};

/// Draws the parts of one cell.
class CellPainter {
public:
    CellPainter(QPainter& painter, const QStyleOptionViewItem& option)
        : painter_(painter),
          option_(option),
          style_(*(option.widget ? option.widget->style() : QApplication::style())) {}

    void text(const NSCell& cell) {
        const auto* field = dynamic_cast<const NSTextFieldCell*>(&cell);
        const bool hasField = field && (field->drawsBackground() || field->isBordered());
        if (field && field->textColor() != NSColor::blackColor()) {
            option_.palette.setColor(QPalette::Text, qtColor(field->textColor()));
        }
        option_.displayAlignment = Qt::AlignVCenter | alignment(cell);
        if (hasField) return textInField(*field);
        option_.features |= QStyleOptionViewItem::HasDisplay;
        option_.text = QString::fromStdString(cell.stringValue());
        style_.drawControl(QStyle::CE_ItemViewItem, &option_, &painter_, option_.widget);
    }

    /// The picture of a button's state; without one, a box.
    void button(NSButtonCell& cell) {
        background();
        // The cell may choose its picture by the frame.
        drawCell(cell, option_.rect, YAxis::down, painter_, ink());
        if (const NSImageRef image = cell.shownImage()) {
            picture(*image, cell.imageSize().value_or(image->size()));
        } else {
            box(cell);
        }
    }

    void popUp(const NSPopUpButtonCell& cell) {
        background();
        QStyleOptionComboBox box;
        static_cast<QStyleOption&>(box) = option_;
        box.type = QStyleOptionComboBox::Type;
        box.version = QStyleOptionComboBox::Version;
        box.state &= ~(QStyle::State_Selected | QStyle::State_HasFocus | QStyle::State_MouseOver);
        box.state |= QStyle::State_Raised;
        box.rect = option_.rect.adjusted(1, 1, -1, -1);
        box.fontMetrics = option_.fontMetrics;
        style_.drawComplexControl(QStyle::CC_ComboBox, &box, &painter_);
        const int room =
            style_.subControlRect(QStyle::CC_ComboBox, &box, QStyle::SC_ComboBoxEditField).width();
        box.currentText = box.fontMetrics.elidedText(QString::fromStdString(cell.faceTitle()),
                                                     Qt::ElideMiddle, room - 2);
        painter_.setFont(option_.font);
        style_.drawControl(QStyle::CE_ComboBoxLabel, &box, &painter_);
    }

    void drawn(NSCell& cell) {
        background();
        drawCell(cell, option_.rect, YAxis::down, painter_, ink());
        if (cell.image()) picture(*cell.image(), cell.imageSize().value_or(cell.image()->size()));
    }

private:
    static Qt::Alignment alignment(const NSCell& cell) {
        switch (cell.alignment()) {
            case NSRightTextAlignment: return Qt::AlignRight;
            case NSCenterTextAlignment: return Qt::AlignHCenter;
            case NSLeftTextAlignment: break;
        }
        return Qt::AlignLeft;
    }

    /// Draws the background of a selected row as the style has it, and marks the cell with the
    /// keyboard focus.
    void background() {
        style_.drawPrimitive(QStyle::PE_PanelItemViewItem, &option_, &painter_, option_.widget);
        if (!(option_.state & QStyle::State_HasFocus)) return;
        QStyleOptionFocusRect focus;
        static_cast<QStyleOption&>(focus) = option_;
        focus.type = QStyleOptionFocusRect::Type;
        focus.version = QStyleOptionFocusRect::Version;
        focus.state |= QStyle::State_KeyboardFocusChange | QStyle::State_Item;
        focus.backgroundColor = option_.palette.color(
            option_.state & QStyle::State_Selected ? QPalette::Highlight : QPalette::Window);
        style_.drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter_, option_.widget);
    }

    QPalette::ColorGroup group() const {
        if (!(option_.state & QStyle::State_Enabled)) return QPalette::Disabled;
        return option_.state & QStyle::State_Active ? QPalette::Active : QPalette::Inactive;
    }

    QColor textColor() const {
        const bool isSelected = option_.state & QStyle::State_Selected;
        return option_.palette.color(group(),
                                     isSelected ? QPalette::HighlightedText : QPalette::Text);
    }

    NSColor ink() const {
        const QColor color = textColor();
        return {static_cast<float>(color.redF()), static_cast<float>(color.greenF()),
                static_cast<float>(color.blueF()), static_cast<float>(color.alphaF())};
    }

    /// A text on a ground of its own, inside of which what marks the row is still seen.
    void textInField(const NSTextFieldCell& cell) {
        background();
        const QRect field = option_.rect.adjusted(2, 2, -2, -2);
        QColor color = textColor();
        if (cell.drawsBackground()) {
            const QColor ground = qtColor(cell.backgroundColor());
            painter_.fillRect(field, ground);
            // The host's colour for texts may be light.
            if (cell.textColor() == NSColor::blackColor()) {
                color = ground.lightnessF() > 0.5 ? Qt::black : Qt::white;
            } else {
                color = qtColor(cell.textColor());
            }
            if (group() == QPalette::Disabled) color.setAlphaF(0.5);
        }
        if (cell.isBordered()) {
            painter_.setPen(option_.palette.color(group(), QPalette::Dark));
            painter_.drawRect(field.adjusted(0, 0, -1, -1));
        }
        const QRect room = field.adjusted(3, 0, -3, 0);
        painter_.setFont(option_.font);
        painter_.setPen(color);
        painter_.drawText(room, static_cast<int>(option_.displayAlignment) | Qt::TextSingleLine,
                          option_.fontMetrics.elidedText(QString::fromStdString(cell.stringValue()),
                                                         Qt::ElideRight, room.width()));
    }

    void picture(const NSImage& image, NSSize size) {
        QSizeF shown(static_cast<qreal>(size.width), static_cast<qreal>(size.height));
        const QSizeF room = option_.rect.size();
        if (shown.width() > room.width() || shown.height() > room.height()) {
            shown.scale(room, Qt::KeepAspectRatio);
        }
        QRectF place(QPointF(), shown);
        place.moveCenter(QRectF(option_.rect).center());
        // A picture between two rows of pixels would be blurred.
        place.moveTopLeft(place.topLeft().toPoint());
        const QPixmap pixmap = pixmapFromImage(image, painter_.device()->devicePixelRatioF());
        painter_.setRenderHint(QPainter::SmoothPixmapTransform);
        if (group() == QPalette::Disabled) painter_.setOpacity(0.5);
        painter_.drawPixmap(place, pixmap, QRectF(QPointF(), QSizeF(pixmap.size())));
    }

    void box(const NSButtonCell& cell) {
        QStyleOptionButton box;
        static_cast<QStyleOption&>(box) = option_;
        box.type = QStyleOptionButton::Type;
        box.version = QStyleOptionButton::Version;
        const bool isOn = cell.state() != NSOffState;
        box.state &= ~(QStyle::State_Selected | QStyle::State_HasFocus);
        box.state |= isOn ? QStyle::State_On : QStyle::State_Off;
        const QSize size(style_.pixelMetric(QStyle::PM_IndicatorWidth, &box),
                         style_.pixelMetric(QStyle::PM_IndicatorHeight, &box));
        box.rect = QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, size, option_.rect);
        if (!isOn && cell.alternateImage()) painter_.setOpacity(faint);
        style_.drawPrimitive(QStyle::PE_IndicatorCheckBox, &box, &painter_);
    }

    QPainter& painter_;
    QStyleOptionViewItem option_;
    const QStyle& style_;
};

}  // namespace

QtTableCells::QtTableCells(std::shared_ptr<NSTableView> table, QObject* parent)
    : QStyledItemDelegate(parent), table_(std::move(table)) {}

void QtTableCells::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
    guarded("Drawing a table's cell", [&] {
        const auto kept = table_;
        const NSCellRef cell = kept ? kept->preparedCell(index.column(), index.row()) : nullptr;
        if (!cell) return;
        const PainterState state(*painter);
        QStyleOptionViewItem item(option);
        item.index = index;
        if (cell->font()) {
            item.font = qtFont(*cell->font(), option.font);
            item.fontMetrics = QFontMetrics(item.font);
        }
        if (!cell->isEnabled()) item.state &= ~QStyle::State_Enabled;
        CellPainter parts(*painter, item);
        if (auto* popUp = dynamic_cast<NSPopUpButtonCell*>(cell.get())) {
            parts.popUp(*popUp);
        } else if (auto* button = dynamic_cast<NSButtonCell*>(cell.get())) {
            parts.button(*button);
        } else if (dynamic_cast<NSTextFieldCell*>(cell.get())) {
            parts.text(*cell);
        } else {
            parts.drawn(*cell);
        }
    });
}

QSize QtTableCells::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    QSize size(0, 0);
    guarded("The size of a table's cell", [&] {
        const QString text = index.data().toString();
        const int margin = option.fontMetrics.height();
        size = {option.fontMetrics.horizontalAdvance(text) + margin, margin};
    });
    return size;
}

QWidget* QtTableCells::createEditor(QWidget* parent, const QStyleOptionViewItem& /*option*/,
                                    const QModelIndex& index) const {
    auto* edit = new QLineEdit(parent);
    edit->setText(index.data().toString());
    edit->setProperty(firstText, edit->text());
    const QVariant title = index.model()->headerData(index.column(), Qt::Horizontal);
    edit->setAccessibleName(title.toString());
    return edit;
}

bool QtTableCells::isEditorFor(const QWidget& editor, const QModelIndex& index) const {
    return editor.property(firstText) == index.data();
}

bool QtTableCells::isEdited(const QModelIndex& index) const {
    return table_ && index.isValid() && table_->editedColumn() == index.column() &&
           table_->editedRow() == index.row();
}

void QtTableCells::setModelData(QWidget* editor, QAbstractItemModel* /*model*/,
                                const QModelIndex& index) const {
    // It may have been told already.
    if (!isEdited(index)) return;
    const QString text = static_cast<QLineEdit*>(editor)->text();
    guarded("Editing a table's cell", [&] {
        const auto kept = table_;
        kept->userEdited(index.column(), index.row(), text.toStdString());
    });
}

void QtTableCells::destroyEditor(QWidget* editor, const QModelIndex& index) const {
    if (isEdited(index)) {
        guarded("Editing a table's cell", [this] { table_->userGaveUpEditing(); });
    }
    QStyledItemDelegate::destroyEditor(editor, index);
}

}  // namespace velmora
