#pragma once

namespace velmora {

/// A font of the desktop's own choice, of one of two families.
struct NSFont {
    enum class Family { system, fixedPitch };

    Family family = Family::system;
    /// In points.
    float pointSize = 13;

    static NSFont systemFontOfSize(float size) { return {Family::system, size}; }
    static NSFont userFixedPitchFontOfSize(float size) { return {Family::fixedPitch, size}; }

    bool operator==(const NSFont&) const = default;
};

}  // namespace velmora
