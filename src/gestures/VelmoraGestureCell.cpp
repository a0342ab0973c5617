#include "gestures/VelmoraGestureCell.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "platform/appkit/drawing/NSColor.h"
#include "platform/runtime/Class.h"

namespace velmora {

namespace {

constexpr int letterLength = 10;
constexpr int avoidance = 2;

constexpr NSSize smallSize{32, 32};
constexpr float smallMargin = 2;
constexpr float smallWidth = 2;
constexpr float bigMargin = 8;
constexpr float bigWidth = 4;

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// The whole number at the beginning of the text, which is taken off together with what separates
/// it from the next one; 0 where no digits stand.
float takeNumber(std::string_view& text) {
    constexpr std::int64_t most = std::numeric_limits<std::int32_t>::max();
    const bool negative = text.starts_with('-');
    if (negative) text.remove_prefix(1);
    std::int64_t number = 0;
    for (; !text.empty() && isDigit(text[0]); text.remove_prefix(1)) {
        number = std::min(number * 10 + (text[0] - '0'), most);
    }
    while (!text.empty() && !isDigit(text[0]) && text[0] != '-') text.remove_prefix(1);
    return static_cast<float>(negative ? -number : number);
}

void addPoints(NSBezierPath& path, std::string_view list) {
    while (!list.empty()) {
        const float x = takeNumber(list);
        const float y = takeNumber(list);
        path.lineToPoint({x, y});
    }
}

/// Whole numbers: a place of the path, or a way to go.
struct Point {
    int x;
    int y;
};

std::optional<Point> directionOf(char letter) {
    switch (letter) {
        case 'l': return Point{-1, 0};
        case 'r': return Point{1, 0};
        case 'u': return Point{0, 1};
        case 'd': return Point{0, -1};
        default: return {};
    }
}

/// To which side the stroke gives way at first: the one to which it goes on each axis before it
/// goes along the other.
Point firstAvoidance(std::string_view letters) {
    Point avoid{0, 0};
    for (const char letter : letters) {
        const auto direction = directionOf(letter);
        if (!direction) continue;
        if (direction->x != 0) avoid.x = direction->x;
        if (direction->y != 0) avoid.y = direction->y;
        if (avoid.x != 0 && avoid.y != 0) break;
    }
    if (avoid.x == 0) avoid.x = 1;
    if (avoid.y == 0) avoid.y = -1;
    return avoid;
}

/// The points of a path, whose coordinates are whole numbers.
class OccupiedPoints {
public:
    explicit OccupiedPoints(std::size_t atMost) { points_.reserve(atMost); }

    /// The point itself if it is free, else the first one that is on the way of the avoidance; it
    /// is occupied from here on.
    Point takeFree(Point point, Point avoid) {
        const std::size_t way = (avoid.x > 0 ? 1 : 0) + (avoid.y > 0 ? 2 : 0);
        int steps = 0;
        for (const Steps* next = at(point, avoid, 0); next; next = at(point, avoid, steps)) {
            steps += (*next)[way];
        }
        // Whoever comes by again has them all in one.
        for (int done = 0; done < steps;) {
            int& known = (*at(point, avoid, done))[way];
            done += std::exchange(known, steps - done);
        }
        const Point free = along(point, avoid, steps);
        points_.emplace(keyOf(free), Steps{1, 1, 1, 1});
        return free;
    }

private:
    /// For each way of avoidance: so many points from this one on are known to be occupied.
    using Steps = std::array<int, 4>;

    static Point along(Point point, Point avoid, int steps) {
        return {point.x + avoidance * steps * avoid.x, point.y + avoidance * steps * avoid.y};
    }
    static std::uint64_t keyOf(Point point) {
        return std::uint64_t{static_cast<std::uint32_t>(point.x)} << 32U |
               static_cast<std::uint32_t>(point.y);
    }
    Steps* at(Point point, Point avoid, int steps) {
        const auto found = points_.find(keyOf(along(point, avoid, steps)));
        return found == points_.end() ? nullptr : &found->second;
    }

    std::unordered_map<std::uint64_t, Steps> points_;
};

void addLetters(NSBezierPath& path, std::string_view letters) {
    Point avoid = firstAvoidance(letters);
    // What path_containsPoint would find, without a search through the path for each point.
    OccupiedPoints points(letters.size() + 1);
    Point last = points.takeFree({0, 0}, avoid);
    for (const char letter : letters) {
        const auto direction = directionOf(letter);
        if (!direction) continue;
        last = points.takeFree(
            {last.x + letterLength * direction->x, last.y + letterLength * direction->y}, avoid);
        path.lineToPoint({static_cast<float>(last.x), static_cast<float>(last.y)});
        if (direction->x != 0) avoid.x = direction->x;
        if (direction->y != 0) avoid.y = direction->y;
    }
}

void translate(NSBezierPath& path, float x, float y) {
    NSAffineTransform transform;
    transform.translateXBy_yBy(x, y);
    path.transformUsingAffineTransform(transform);
}

/// Makes it as large as fits into a square of that side at the origin, and puts it in the middle. A
/// path of one point keeps its size.
void fit(NSBezierPath& path, float side) {
    const NSRect bounds = path.bounds();
    translate(path, -bounds.origin.x, -bounds.origin.y);
    const float largest = std::max(bounds.size.width, bounds.size.height);
    NSAffineTransform scale;
    if (largest > 0) scale.scaleBy(side / largest);
    path.transformUsingAffineTransform(scale);
    const NSSize size = path.bounds().size;
    translate(path, (side - size.width) / 2, (side - size.height) / 2);
}

void strokeWithDot(NSBezierPath& path, float width) {
    NSBezierPath dot;
    NSPoint start;
    path.elementAtIndex_associatedPoints(0, &start);
    dot.moveToPoint(start);
    dot.lineToPoint(start);
    NSColor::blackColor().set();
    const auto stroke = [](NSBezierPath& line, float lineWidth) {
        line.setLineCapStyle(NSRoundLineCapStyle);
        line.setLineJoinStyle(NSRoundLineJoinStyle);
        line.setLineWidth(lineWidth);
        line.stroke();
    };
    if (path.bounds().size != NSSize()) stroke(path, width);
    stroke(dot, 2 * width);
}

}  // namespace

Class& VelmoraGestureCell::classObject() {
    static auto* object = new Class("VelmoraGestureCell", &NSCell::classObject());
    return *object;
}

NSSize VelmoraGestureCell::cellSize() {
    return isBig_ ? NSCell::cellSize() : smallSize;
}

bool VelmoraGestureCell::path_containsPoint(const NSBezierPath& path, NSPoint point) {
    const PathElements elements = path.elements();
    return std::any_of(elements.begin(), elements.end(),
                       [&](const PathElement& element) { return element.point == point; });
}

NSBezierPathRef VelmoraGestureCell::preprocessGesture() const {
    const std::string& string = stringValue();
    if (string.empty()) return nullptr;
    NSBezierPathRef path = NSBezierPath::bezierPath();
    path->moveToPoint({0, 0});
    if (isDigit(string[0])) {
        addPoints(*path, string);
    } else {
        addLetters(*path, string);
    }
    return path;
}

void VelmoraGestureCell::drawInteriorWithFrame_inView(NSRect frame, NSView* /*view*/) {
    const NSBezierPathRef path = preprocessGesture();
    if (!path) return;
    if (isBig_) {
        auto side = static_cast<float>(static_cast<int>(frame.size.width));
        if (side > frame.size.height) {
            side = static_cast<float>(static_cast<int>(frame.size.height));
        }
        fit(*path, std::max(side - 2 * bigMargin, 0.0F));
        translate(*path, bigMargin, bigMargin);
        translate(*path, frame.origin.x + (frame.size.width - side) / 2,
                  frame.origin.y + (frame.size.height - side) / 2);
        strokeWithDot(*path, bigWidth);
        return;
    }
    fit(*path, smallSize.width - 2 * smallMargin);
    translate(*path, smallMargin, smallMargin);
    NSAffineTransform flip;
    flip.scaleXBy_yBy(1, -1);
    path->transformUsingAffineTransform(flip);
    translate(*path, 0, smallSize.height);
    translate(*path, frame.origin.x, frame.origin.y);
    strokeWithDot(*path, smallWidth);
}

}  // namespace velmora
