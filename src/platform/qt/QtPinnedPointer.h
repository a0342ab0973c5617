#pragma once

#include <QPoint>
#include <QPointF>
#include <memory>

#include "platform/appkit/CGDirectDisplay.h"

namespace velmora {

class X11RawMotion;

/// The pointer while the mouse does not move it. Motion is read from the X server where that tells
/// it, and the pointer is set back to its place; elsewhere it is read off the pointer.
class QtPinnedPointer {
public:
    QtPinnedPointer();
    ~QtPinnedPointer();

    /// The pointer stands there from here on; what it has moved since is the first motion.
    void pin(QPoint place);
    void release();
    bool isPinned() const { return pinned_; }
    QPoint place() const { return place_; }

    /// Whether there is motion to take. The toolkit tells of none that ends where it saw the
    /// pointer before, as motion often does that is set back in between.
    bool hasMoved();

    /// As Desktop::lastMouseDelta.
    CGMouseDelta takeDelta();

private:
    QPointF motion();

    bool pinned_ = false;
    QPoint place_;
    /// Where the pointer was seen last.
    QPoint seen_;
    /// What is not yet a whole pixel.
    QPointF rest_;
    std::unique_ptr<X11RawMotion> raw_;
};

}  // namespace velmora
