#pragma once

#include <QPoint>

namespace velmora {

/// The pointer is at another place for a while, for hosts that ask where it is instead of where the
/// event was. It goes back by the way that it came, so that what a hand moves it meanwhile is kept.
/// Where a pointer cannot be moved (Wayland), it stays where it is.
class BorrowedPointer {
public:
    /// To the place on the whole screen.
    explicit BorrowedPointer(QPoint place);
    ~BorrowedPointer();
    BorrowedPointer(const BorrowedPointer&) = delete;
    BorrowedPointer& operator=(const BorrowedPointer&) = delete;

private:
    QPoint wayBack_;
};

}  // namespace velmora
