#pragma once

#include <QButtonGroup>
#include <QPointer>
#include <QWidget>
#include <functional>
#include <memory>
#include <vector>

#include "platform/appkit/controls/NSMatrix.h"

class QAbstractButton;

namespace velmora {

/// The widgets that show a matrix of ours, one for each cell, made row by row as they are asked
/// for. Cells with a picture are tool buttons that show nothing else.
class QtMatrix final : public QObject, public ControlPeer {
public:
    /// The user's clicks count while `takesInput()`. The parent owns this and all its widgets.
    QtMatrix(std::shared_ptr<NSMatrix> matrix, std::function<bool()> takesInput, QWidget* parent);
    ~QtMatrix() override;
    QtMatrix(const QtMatrix&) = delete;
    QtMatrix& operator=(const QtMatrix&) = delete;

    /// The widgets of one row, a column each; none of a row that the matrix does not have.
    std::vector<QWidget*> row(int row);
    /// One widget with all that is not shown row by row.
    QWidget* whole();

    /// The matrix is no longer shown here; a widget may still be in the middle of an event.
    void letGo();

    void draw() override {}
    void needsDisplay() override;

private:
    struct Place {
        QPointer<QWidget> widget;
        NSCellRef cell;
        int row;
    };

    QWidget* makeWidget(const NSCellRef& cell, int row, int column);
    QAbstractButton* makeButton(const NSButtonCellRef& cell);
    void show(const Place& place) const;
    void clicked(int row, int column);

    std::shared_ptr<NSMatrix> matrix_;
    std::function<bool()> takesInput_;
    QWidget* parent_;
    /// Holds the cells of a radio matrix, of which only one is on.
    QButtonGroup group_;
    std::vector<Place> places_;
    QPointer<QWidget> whole_;
};

}  // namespace velmora
