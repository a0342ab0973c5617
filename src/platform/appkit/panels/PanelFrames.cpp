#include "platform/appkit/panels/PanelFrames.h"

#include <array>
#include <cmath>
#include <locale>
#include <sstream>

#include "platform/foundation/SettingsFiles.h"
#include "platform/port/Desktop.h"
#include "platform/runtime/NSLog.h"
#include "platform/runtime/ProcessWide.h"

namespace velmora {

namespace {

/// Nothing that is farther out can be on a screen.
constexpr float farthest = 1e6F;

ProcessWide<std::string> filePath;

std::string& file() {
    return *filePath;
}

/// Nothing when the file may well hold some, but cannot be read now.
std::optional<NSDictionary> readFrames() {
    SettingsFiles::Reading reading = SettingsFiles::ofProcess().read(desktop().files(), file());
    if (reading.failed) return std::nullopt;
    if (!reading.dictionary()) return NSDictionary();
    return std::move(*reading.dictionary());
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
    const std::optional<NSDictionary> frames = readFrames();
    const PropertyList* frame = frames ? frames->objectForKey(name) : nullptr;
    return frame && frame->string() ? frameFromText(*frame->string()) : std::nullopt;
}

void PanelFrames::setFrame(const std::string& name, NSRect frame) {
    if (file().empty()) return;
    std::optional<NSDictionary> frames = readFrames();
    if (!frames) return;
    const std::string text = textOfFrame(frame);
    const PropertyList* before = frames->objectForKey(name);
    if (before && before->string() && *before->string() == text) return;
    frames->setObject_forKey(PropertyList(text), name);
    if (!SettingsFiles::ofProcess().write(desktop().files(), std::move(*frames), file())) {
        NSLog("The panels' places cannot be written to '" + file() + "'");
    }
}

}  // namespace velmora
