#pragma once

#include <QHeaderView>
#include <memory>

#include "platform/appkit/controls/NSTableView.h"

namespace velmora {

/// The widths of a table's columns and those of a header's sections, each following the other. The
/// columns fill the view: what one gains or loses the next that may be resized loses or gains.
class QtTableColumns final {
public:
    QtTableColumns(QHeaderView& header, std::shared_ptr<NSTableView> table);

    void letGo() { table_ = nullptr; }

    /// The table's columns are others, or their widths are.
    void show();
    /// There is so much room, in points.
    void fit(int width);

private:
    void userResized(int section, int size);
    /// Gives a column what is left of the width; the first one after `section` that may be resized,
    /// or the last before it.
    void giveRest(std::size_t section);

    QHeaderView& header_;
    std::shared_ptr<NSTableView> table_;
    float width_ = 0;
    bool showing_ = false;
    QObject context_;
};

}  // namespace velmora
