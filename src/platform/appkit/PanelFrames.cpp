#include "platform/appkit/PanelFrames.h"

#include <array>
#include <cmath>
#include <locale>
#include <sstream>

#include "platform/Desktop.h"
#include "platform/foundation/NSLog.h"
#include "platform/foundation/PropertyListFile.h"
#include "platform/runtime/ProcessWide.h"

namespace velmora {

namespace {

/// Nothing that is farther out can be on a screen.
constexpr float farthest = 1e6F;

ProcessWide<std::string> filePath;

std::string& file() {
    return *filePath;
}

NSDictionary readFrames() {
    return dictionaryWithContentsOfFile(desktop().files(), file()).value_or(NSDictionary());
}

/// Whatever the host's locale is.
std::string textOfFrame(NSRect frame) {
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text << frame.origin.x << ' ' << frame.origin.y << ' ' << frame.size.width << ' '
         << frame.size.height;
    return text.str();
}

std::optional<NSRect> frameFromText(const std::string& text) {
    std::istringstream numbers(text);
    numbers.imbue(std::locale::classic());
    std::array<float, 4> read{};
    for (float& number : read) {
        if (!(numbers >> number) || !(std::abs(number) < farthest)) return std::nullopt;
    }
    if (read[2] <= 0 || read[3] <= 0) return std::nullopt;
    return NSRect{{read[0], read[1]}, {read[2], read[3]}};
}

}  // namespace

void PanelFrames::setFile(const std::string& path) {
    file() = path;
}

std::optional<NSRect> PanelFrames::frameOf(const std::string& name) {
    if (file().empty()) return std::nullopt;
    const NSDictionary frames = readFrames();
    const PropertyList* frame = frames.objectForKey(name);
    return frame && frame->string() ? frameFromText(*frame->string()) : std::nullopt;
}

void PanelFrames::setFrame(const std::string& name, NSRect frame) {
    if (file().empty()) return;
    NSDictionary frames = readFrames();
    const std::string text = textOfFrame(frame);
    const PropertyList* before = frames.objectForKey(name);
    if (before && before->string() && *before->string() == text) return;
    frames.setObject_forKey(PropertyList(text), name);
    if (!writeDictionaryToFile(desktop().files(), frames, file())) {
        NSLog("The panels' places cannot be written to '" + file() + "'");
    }
}

}  // namespace velmora
