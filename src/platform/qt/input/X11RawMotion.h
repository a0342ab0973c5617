#pragma once

#include <QPoint>
#include <QPointF>
#include <QSize>
#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <vector>

#include "platform/qt/base/X11Connection.h"

namespace velmora {

/// The motion of the mouse as the X server tells it, wherever the pointer is and whoever has
/// grabbed it. Has a connection of its own, for as long as it exists. Units are the screen's own
/// pixels.
class X11RawMotion {
public:
    X11RawMotion();

    /// Whether the server tells. On any other display, and where it knows no raw motion, it does
    /// not.
    bool isOn() const { return on_; }

    /// Where the pointer is; motion counts from here on.
    std::optional<QPoint> begin();

    struct Reading {
        QPoint pointer;
        /// What mice have moved since the last reading, or since the beginning.
        QPointF motion;
        /// Where a device that tells places has put the pointer meanwhile, as a tablet does.
        std::optional<QPoint> told;
    };
    /// All that the server had before this call. Nothing when it does not answer any more.
    std::optional<Reading> take();

    /// Sets the pointer there.
    void moveTo(QPoint place);

private:
    struct Answer {
        std::optional<QPoint> place;
        /// The request's number on the connection.
        std::uint32_t number = 0;
    };
    /// What the numbers of a device's motion are. The server's own device, by which programs move
    /// the pointer, has either.
    enum class Mode { relative, absolute, either };
    struct Event {
        /// The number of the last request that the server had seen before it.
        std::uint32_t number;
        std::uint16_t device;
        QPointF numbers;
    };
    bool select();
    /// Waits for the server's answer, so that all events from before it are there; some from after
    /// it may be there too.
    Answer pointer();
    void readEvents();
    void readEither(const std::vector<Event>& events, Reading& reading);
    Mode modeOf(std::uint16_t device);
    bool isServersOwn(std::uint16_t device);
    bool hasAbsoluteAxes(std::uint16_t device);

    X11OwnConnection connection_;
    std::uint8_t extension_ = 0;
    /// The atom of the property that the server's own devices have.
    std::uint32_t ownDeviceProperty_ = 0;
    QSize size_;
    /// Where the pointer was put last, or was seen at the beginning.
    QPoint from_;
    /// How the server's own device was understood last.
    bool ownDeviceTellsPlaces_ = false;
    /// Motion counts from this request on.
    std::uint32_t first_ = 0;
    std::deque<Event> events_;
    std::map<std::uint16_t, Mode> modes_;
    /// The last, since finding out sets some of the others.
    bool on_;
};

}  // namespace velmora
