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

    /// The pointer stands there from here on; what it has moved since is the first motion. The
    /// place is the toolkit's.
    void pin(QPointF place);
    void release();

    /// The host needs the pointer before it is released: it stays where it is.
    void lose();
    /// Lost, and not yet released.
    bool isLost() const { return lost_; }

    /// Whether there is motion to take. The toolkit tells of none that ends where it saw the
    /// pointer before, as motion often does that is set back in between.
    bool hasMoved();

    /// As Desktop::lastMouseDelta.
    CGMouseDelta takeDelta();

private:
    QPointF motion();

    bool pinned_ = false;
    bool lost_ = false;
    /// Where it stands and where it was seen last: in the X server's pixels where that tells the
    /// motion, which can be finer than the toolkit's; and how many of them are one of those.
    QPoint place_;
    QPoint seen_;
    double pixels_ = 1;
    /// What is not yet a whole pixel of the toolkit's.
    QPointF rest_;
    std::unique_ptr<X11RawMotion> raw_;
};

}  // namespace velmora
