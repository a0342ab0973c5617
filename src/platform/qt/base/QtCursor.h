#pragma once

#include <QPixmap>

namespace velmora {

class NSCursor;

/// The cursor that the layer shows in the whole application. It lies in Qt's stack of override
/// cursors, among those of the host, which keep their order when ours comes and goes.
class QtCursor {
public:
    ~QtCursor();

    /// Shows the cursor; null, or one without a picture, gives back the host's own.
    void show(const NSCursor* cursor);

private:
    void hide();

    /// The picture of ours that is in the stack; null for none.
    QPixmap shown_;
};

}  // namespace velmora
