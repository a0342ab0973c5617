#pragma once

#include <optional>
#include <string>

#include "platform/port/NSGeometry.h"

namespace velmora {

/// Where panels were when they were last seen, by name: a property list of "x y width height" in
/// screen coordinates, in a file that all processes share.
class PanelFrames {
public:
    /// For this process. Without a file nothing is kept.
    static void setFile(const std::string& path);

    /// Nothing for a name that is not there, and for what is no frame.
    static std::optional<NSRect> frameOf(const std::string& name);

    /// Writes the file if it is another frame than before. A failure is a line in the log.
    static void setFrame(const std::string& name, NSRect frame);
};

}  // namespace velmora
