#include "gestures/VelmoraGestureCell.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>
#include <unordered_set>

#include "platform/appkit/NSColor.h"
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

struct Direction {
    int x;
    int y;
};

std::optional<Direction> directionOf(char letter) {
    switch (letter) {
        case 'l': return Direction{-1, 0};
        case 'r': return Direction{1, 0};
        case 'u': return Direction{0, 1};
        case 'd': return Direction{0, -1};
        default: return {};
    }
}

/// To which side the stroke gives way at first: the one to which it goes on each axis before it
/// goes along the other.
Direction firstAvoidance(std::string_view letters) {
    Direction avoid{0, 0};
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

/// The points of a path, all of whose coordinates are whole numbers.
class WholePoints {
public:
    explicit WholePoints(std::size_t atMost) { points_.reserve(atMost); }
    /// False when it is there already.
    bool add(int x, int y) {
        return points_
            .insert(std::uint64_t{static_cast<std::uint32_t>(x)} << 32U |
                    static_cast<std::uint32_t>(y))
            .second;
    }

private:
    std::unordered_set<std::uint64_t> points_;
};

void addLetters(NSBezierPath& path, std::string_view letters) {
    Direction avoid = firstAvoidance(letters);
    // What path_containsPoint would find, without a search through the path for each point.
    WholePoints points(letters.size() + 1);
    int x = 0;
    int y = 0;
    points.add(x, y);
    for (const char letter : letters) {
        const auto direction = directionOf(letter);
        if (!direction) continue;
        x += letterLength * direction->x;
        y += letterLength * direction->y;
        while (!points.add(x, y)) {
            x += avoidance * avoid.x;
            y += avoidance * avoid.y;
        }
        path.lineToPoint({static_cast<float>(x), static_cast<float>(y)});
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
