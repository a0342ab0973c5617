#pragma once

#include <QPoint>
#include <QPointF>
#include <memory>
#include <optional>

#include "platform/port/CGDirectDisplay.h"

namespace velmora {

/// The pointer while the mouse does not move it. Motion is read from the X server where that tells
/// it, and the pointer is set back to its place; elsewhere it is read off the pointer.
class QtPinnedPointer {
public:
    QtPinnedPointer();
    ~QtPinnedPointer();
    QtPinnedPointer(const QtPinnedPointer&) = delete;
    QtPinnedPointer& operator=(const QtPinnedPointer&) = delete;

    /// The pointer stands from here on where a button was pressed, in the toolkit's coordinates;
    /// what it has moved since is the first motion. Without a press it stands where it is.
    void pin(std::optional<QPointF> press);
    void release();

    /// The host needs the pointer before it is released: it stays where it is. False when it is not
    /// pinned.
    bool lose();

    /// Whether there is motion to take. The toolkit tells of none that ends where it saw the
    /// pointer before, as motion often does that is set back in between.
    bool hasMoved();

    /// As Desktop::lastMouseDelta.
    CGMouseDelta takeDelta();

private:
    class Hold;
    class ServerHold;
    class ToolkitHold;

    /// What keeps it at its place; null while the mouse moves it.
    std::unique_ptr<Hold> hold_;
    /// Motion in the toolkit's pixels that has not been taken yet.
    QPointF rest_;
};

}  // namespace velmora
