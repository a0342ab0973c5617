#pragma once

#include <QObject>
#include <QPoint>
#include <QTimer>
#include <memory>
#include <optional>

#include "platform/appkit/controls/NSTableView.h"

class QTableView;

namespace velmora {

/// A drag of rows of a table within it, which the table has let begin: from there until the button
/// is released or the drag is given up, when this is deleted. The view tells it of the pointer, in
/// coordinates of its viewport.
class QtRowDrag final : public QObject {
public:
    QtRowDrag(QTableView& view, std::shared_ptr<NSTableView> table);
    ~QtRowDrag() override;
    QtRowDrag(const QtRowDrag&) = delete;
    QtRowDrag& operator=(const QtRowDrag&) = delete;

    void moveTo(QPoint pointer);
    /// Where the pointer was last, if the table takes it there.
    void drop();
    /// The mark where a drop would go, in the host's style.
    void paint() const;

private:
    struct Place {
        int row;
        NSTableViewDropOperation operation;
    };
    bool isAllowed(Place place) const;
    std::optional<Place> placeAt(QPoint pointer) const;
    void scroll();

    QTableView& view_;
    std::shared_ptr<NSTableView> table_;
    QPoint pointer_;
    std::optional<Place> place_;
    QTimer scroller_;
};

}  // namespace velmora
