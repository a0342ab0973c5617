#include "replay/Canvas.h"

#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

namespace velmora {

namespace {

constexpr std::size_t bytesPerPixel = 4;

/// Gives the context back as it was.
class Saved {
public:
    explicit Saved(cairo_t* context) : context_(context) { cairo_save(context); }
    ~Saved() { cairo_restore(context_); }
    Saved(const Saved&) = delete;
    Saved& operator=(const Saved&) = delete;

private:
    cairo_t* context_;
};

void setColor(cairo_t* context, NSColor color) {
    cairo_set_source_rgba(context, static_cast<double>(color.red), static_cast<double>(color.green),
                          static_cast<double>(color.blue), static_cast<double>(color.alpha));
}

void addRect(cairo_t* context, NSRect rect) {
    cairo_rectangle(context, static_cast<double>(rect.origin.x), static_cast<double>(rect.origin.y),
                    static_cast<double>(rect.size.width), static_cast<double>(rect.size.height));
}

void transform(cairo_t* context, const NSAffineTransform& by) {
    const cairo_matrix_t matrix{static_cast<double>(by.m11), static_cast<double>(by.m12),
                                static_cast<double>(by.m21), static_cast<double>(by.m22),
                                static_cast<double>(by.tX),  static_cast<double>(by.tY)};
    cairo_transform(context, &matrix);
}

void setStyle(cairo_t* context, const StrokeStyle& style) {
    constexpr auto cap = [](NSLineCapStyle of) {
        switch (of) {
            case NSRoundLineCapStyle: return CAIRO_LINE_CAP_ROUND;
            case NSSquareLineCapStyle: return CAIRO_LINE_CAP_SQUARE;
            case NSButtLineCapStyle: break;
        }
        return CAIRO_LINE_CAP_BUTT;
    };
    constexpr auto join = [](NSLineJoinStyle of) {
        switch (of) {
            case NSRoundLineJoinStyle: return CAIRO_LINE_JOIN_ROUND;
            case NSBevelLineJoinStyle: return CAIRO_LINE_JOIN_BEVEL;
            case NSMiterLineJoinStyle: break;
        }
        return CAIRO_LINE_JOIN_MITER;
    };
    cairo_set_line_width(context, static_cast<double>(style.width));
    cairo_set_line_cap(context, cap(style.cap));
    cairo_set_line_join(context, join(style.join));
    const std::vector<double> dash(style.dash.begin(), style.dash.end());
    cairo_set_dash(context, dash.data(), static_cast<int>(dash.size()),
                   static_cast<double>(style.dashPhase));
}

void playOne(cairo_t* context, const FillOperation& fill) {
    transform(context, fill.transform);
    setColor(context, fill.color);
    cairo_set_operator(context, CAIRO_OPERATOR_SOURCE);
    addRect(context, fill.rect);
    cairo_fill(context);
}

void playOne(cairo_t* context, const StrokeOperation& stroke) {
    transform(context, stroke.transform);
    setColor(context, stroke.color);
    setStyle(context, stroke.style);
    for (const PathElement& element : stroke.path) {
        const auto x = static_cast<double>(element.point.x);
        const auto y = static_cast<double>(element.point.y);
        if (element.kind == NSMoveToBezierPathElement) {
            cairo_move_to(context, x, y);
        } else {
            cairo_line_to(context, x, y);
        }
    }
    cairo_stroke(context);
}

/// A pixel as cairo keeps it: alpha above red, green and blue, these multiplied by it.
std::uint32_t packed(const std::uint8_t* rgba) {
    const unsigned alpha = rgba[3];
    const auto part = [alpha](unsigned value) { return (value * alpha + 127) / 255; };
    return alpha << 24U | part(rgba[0]) << 16U | part(rgba[1]) << 8U | part(rgba[2]);
}

void unpack(std::uint32_t pixel, std::uint8_t* rgba) {
    const unsigned alpha = pixel >> 24U;
    const auto part = [alpha](unsigned value) {
        return static_cast<std::uint8_t>(
            alpha == 0 ? 0 : std::min(255U, (value * 255 + alpha / 2) / alpha));
    };
    rgba[0] = part(pixel >> 16U & 0xFFU);
    rgba[1] = part(pixel >> 8U & 0xFFU);
    rgba[2] = part(pixel & 0xFFU);
    rgba[3] = static_cast<std::uint8_t>(alpha);
}

std::unique_ptr<cairo_surface_t, void (*)(cairo_surface_t*)> surfaceOfSize(int width, int height) {
    return {cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height), cairo_surface_destroy};
}

}  // namespace

void Canvas::Delete::operator()(cairo_t* context) const {
    cairo_destroy(context);
}

Canvas::Canvas(NSSize size, double pixels) {
    const auto count = [pixels](float points) {
        return static_cast<int>(std::ceil(static_cast<double>(points) * pixels));
    };
    const auto surface = surfaceOfSize(count(size.width), count(size.height));
    context_.reset(cairo_create(surface.get()));
    cairo_translate(context_.get(), 0, count(size.height));
    cairo_scale(context_.get(), pixels, -pixels);
}

void Canvas::fill(NSRect rect, NSColor color) {
    setColor(context_.get(), color);
    addRect(context_.get(), rect);
    cairo_fill(context_.get());
}

void Canvas::draw(const Bitmap& picture, NSPoint upperLeft) {
    const auto surface = surfaceOfSize(picture.width, picture.height);
    if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS) return;
    auto* rows = cairo_image_surface_get_data(surface.get());
    const auto stride = static_cast<std::size_t>(cairo_image_surface_get_stride(surface.get()));
    const auto width = static_cast<std::size_t>(picture.width);
    for (std::size_t i = 0; i < picture.pixels.size() / bytesPerPixel; ++i) {
        const std::uint32_t pixel = packed(&picture.pixels[i * bytesPerPixel]);
        std::memcpy(rows + i / width * stride + i % width * bytesPerPixel, &pixel, sizeof pixel);
    }
    cairo_surface_mark_dirty(surface.get());
    const Saved saved(context_.get());
    cairo_translate(context_.get(), static_cast<double>(upperLeft.x),
                    static_cast<double>(upperLeft.y));
    cairo_scale(context_.get(), 1, -1);
    cairo_set_source_surface(context_.get(), surface.get(), 0, 0);
    cairo_paint(context_.get());
}

void Canvas::play(const DisplayList& list, NSRect frame, double opacity) {
    cairo_t* const context = context_.get();
    const Saved saved(context);
    addRect(context, frame);
    cairo_clip(context);
    cairo_translate(context, static_cast<double>(frame.origin.x),
                    static_cast<double>(frame.origin.y));
    // A layer of its own, so that what is cleared in it uncovers what lies below.
    cairo_push_group(context);
    for (const auto& operation : list) {
        const Saved before(context);
        std::visit([&](const auto& one) { playOne(context, one); }, operation);
    }
    cairo_pop_group_to_source(context);
    cairo_paint_with_alpha(context, opacity);
}

Bitmap Canvas::bitmap() const {
    cairo_surface_t* const surface = cairo_get_target(context_.get());
    cairo_surface_flush(surface);
    const unsigned char* rows = cairo_image_surface_get_data(surface);
    if (!rows) return {};
    Bitmap bitmap = Bitmap::blank(cairo_image_surface_get_width(surface),
                                  cairo_image_surface_get_height(surface));
    const auto stride = static_cast<std::size_t>(cairo_image_surface_get_stride(surface));
    const auto width = static_cast<std::size_t>(bitmap.width);
    for (std::size_t i = 0; i < bitmap.pixels.size() / bytesPerPixel; ++i) {
        std::uint32_t pixel = 0;
        std::memcpy(&pixel, rows + i / width * stride + i % width * bytesPerPixel, sizeof pixel);
        unpack(pixel, &bitmap.pixels[i * bytesPerPixel]);
    }
    return bitmap;
}

}  // namespace velmora
