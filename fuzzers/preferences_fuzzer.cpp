#include <cstdint>
#include <cstdlib>
#include <string>

#include "platform/appkit/NSEvent.h"
#include "platform/headless/HeadlessSession.h"
#include "preferences/VelmoraDefaults.h"

/// Any bytes as the preferences file: the tables hold legal entries only and end in time, and what
/// is written reads back as the same preferences.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace velmora;
    HeadlessSession session("");
    HeadlessProcess& process = session.addProcess(HostDescription{.processName = "Editor"});
    const HeadlessProcess::Scope scope(process);
    const auto defaults = std::make_shared<VelmoraDefaults>(VelmoraDefaults::Callbacks());
    session.files().writeAtomically(defaults->globalDefaultsFileName(),
                                    std::string(reinterpret_cast<const char*>(data), size));
    defaults->initForMenuItem(nullptr);

    int entries = 0;
    while (VelmoraActions[entries]) ++entries;
    int enabled = 0;
    for (int i = 0; i < VelmoraSlotCount; ++i) {
        if (defaults->isEnabledForIndex(i) && defaults->isSettingLegalAtIndex(i)) ++enabled;
    }
    if (entries != enabled) std::abort();
    for (int i = 0; i < entries; ++i) {
        if (VelmoraModifiers[i] & ~VelmoraModifierMask) std::abort();
    }

    defaults->saveAndUpdateDefaults();
    const auto again = std::make_shared<VelmoraDefaults>(VelmoraDefaults::Callbacks());
    again->initForMenuItem(nullptr);
    for (int i = 0; i < VelmoraSlotCount; ++i) {
        if (again->mouseButtonForIndex(i) != defaults->mouseButtonForIndex(i) ||
            again->modifierForIndex(i) != defaults->modifierForIndex(i) ||
            again->isEnabledForIndex(i) != defaults->isEnabledForIndex(i)) {
            std::abort();
        }
    }
    if (again->gestureSize() != defaults->gestureSize() ||
        again->gestureTimeout() != defaults->gestureTimeout() ||
        again->drawsFeedback() != defaults->drawsFeedback() ||
        again->makeGestureWindowKey() != defaults->makeGestureWindowKey()) {
        std::abort();
    }
    return 0;
}
