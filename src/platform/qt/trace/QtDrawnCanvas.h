#pragma once

#include <QWidget>
#include <memory>

#include "platform/port/NSGeometry.h"
#include "platform/qt/trace/LayeredPicture.h"
#include "platform/qt/trace/X11Shape.h"

namespace velmora {

/// What a drawn window is on the screen.
class QtDrawnCanvas final : public QWidget {
public:
    enum class Kind {
        /// A window that is transparent where nothing is drawn.
        translucent,
        /// A window that has the shape of what is drawn.
        shaped,
        /// A widget over all of a window of the host, which does not notice it.
        inHost,
    };

    /// `around` is the host's window, for a canvas in one.
    QtDrawnCanvas(Kind kind, bool staysOnTop, QWidget* around);

    Kind kind() const { return kind_; }

    /// Gives the window its place, in screen coordinates.
    void place(NSRect frame);
    /// Shows the list, whose base coordinates begin at the lower left corner of the frame.
    void draw(const DisplayList& list, NSPoint lowerLeft);
    void setAlpha(float alpha);
    /// Forgets what is drawn.
    void clear();

private:
    void paintEvent(QPaintEvent* event) override;
    /// What the native pixels of the plane count from, in the toolkit's global coordinates.
    QPointF planeOrigin() const;
    void bringUp(const LayerChange& change);

    Kind kind_;
    LayeredPicture picture_;
    std::unique_ptr<X11Shape> shape_;
    /// Where the window's upper left pixel lies on the plane.
    QPoint corner_;
    /// The window has moved on the plane since it was drawn.
    bool moved_ = false;
    double alpha_ = 1;
};

}  // namespace velmora
