#include "platform/qt/panels/controls/QtTextColor.h"

#include <QPalette>

#include "platform/qt/base/QtDrawing.h"

namespace velmora {

namespace {

constexpr int halfLight = 128;
constexpr QRgb redOnLight = 0xFFC01010;
constexpr QRgb redOnDark = 0xFFFF7B72;

}  // namespace

QColor textColorOn(const QPalette& palette, NSColor color) {
    if (color == NSColor::blackColor())
        return palette.color(QPalette::Active, QPalette::WindowText);
    if (color == NSColor::lightGrayColor()) {
        return palette.color(QPalette::Disabled, QPalette::WindowText);
    }
    if (color == NSColor::redColor()) {
        const bool isLight = palette.color(QPalette::Window).lightness() >= halfLight;
        return QColor(isLight ? redOnLight : redOnDark);
    }
    return qtColor(color);
}

}  // namespace velmora
