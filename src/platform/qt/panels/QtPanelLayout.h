#pragma once

#include <QPointer>
#include <QWidget>
#include <vector>

#include "platform/appkit/controls/NSContentView.h"

class QGridLayout;
class QLabel;

namespace velmora {

class QtControls;

/// Lays out a panel's rows, so that all that there is to read is shown in full and the columns line
/// up. A row's last widget has the rest of its width. A row with a table or a text area has a
/// layout of its own and the height that is left over; so has one of push buttons alone. At the
/// panel's end these stand to the right, from the first on that a key clicks, the others to the
/// left; without such keys all stand to the right.
class QtPanelLayout {
public:
    /// The widgets become children of the body, which outlives this.
    QtPanelLayout(QtControls& controls, QWidget& body) : controls_(&controls), body_(&body) {}

    /// Anew, with the widgets of the controls that are shown already.
    void arrange(const std::vector<NSContentView::Row>& rows, const QString& title);

private:
    using Row = NSContentView::Row;

    void addRow(const Row& cells, int row);
    void addBoxRow(const Row& cells, int row);
    void addButtonRow(const Row& cells, int row, bool isLast);
    void place(QWidget& widget, int row, int column, bool isLast);
    QLabel* makeLabel(const NSContentView::Label& label, bool isAlone);
    /// Gives the widget the label's text, which may be null, as its accessible name, or else the
    /// panel's title, unless it has a name of its own.
    void name(QWidget& widget, const QLabel* label) const;
    /// Puts the label's text before the name of a matrix's cell.
    static void nameCell(QWidget& widget, const QLabel* label);
    /// Makes the label, which may be null, the one of the widget for those who read by ear.
    static void giveKey(QWidget& widget, QLabel* label);

    QtControls* controls_;
    QWidget* body_;
    QGridLayout* grid_ = nullptr;
    /// Those with something in it; one more is there to be spanned by what has the rest of a row.
    int columns_ = 1;
    /// One of them has what is left over of the width.
    bool hasWideColumn_ = false;
    std::vector<QPointer<QLabel>> labels_;
    /// The panel's.
    QString title_;
};

}  // namespace velmora
