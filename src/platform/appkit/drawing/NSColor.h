#pragma once

namespace velmora {

/// A colour in the calibrated RGB space, every component from 0 to 1.
struct NSColor {
    float red = 0;
    float green = 0;
    float blue = 0;
    float alpha = 0;

    static NSColor clearColor() { return {0, 0, 0, 0}; }
    static NSColor whiteColor() { return {1, 1, 1, 1}; }
    static NSColor blackColor() { return {0, 0, 0, 1}; }
    static NSColor redColor() { return {1, 0, 0, 1}; }
    static NSColor lightGrayColor() { return {2.0F / 3, 2.0F / 3, 2.0F / 3, 1}; }
    static NSColor colorWithCalibratedRed_green_blue_alpha(float red, float green, float blue,
                                                           float alpha) {
        return {red, green, blue, alpha};
    }

    /// What is drawn from here on in the current context has the colour.
    void set() const;

    bool operator==(const NSColor&) const = default;
};

}  // namespace velmora
