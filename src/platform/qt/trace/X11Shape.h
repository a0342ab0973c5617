#pragma once

#include <QPoint>
#include <QRect>
#include <cstdint>
#include <vector>

namespace velmora {

/// The shape of a window of the host's connection, in pixels of the window: nothing of it is on the
/// screen elsewhere. Requests take their place among those of the toolkit.
class X11Shape {
public:
    /// Whether the X server can do it; false on another display.
    static bool isAvailable();

    explicit X11Shape(std::uint32_t window) : window_(window) {}

    void set(const std::vector<QRect>& rects);
    void add(const std::vector<QRect>& rects);
    void move(QPoint by);

private:
    std::uint32_t window_;
};

}  // namespace velmora
