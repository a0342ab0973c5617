#include "preferences/VelmoraDefaults.h"

#include <algorithm>
#include <limits>

#include "definitions/VelmoraSettingsDirectory.h"
#include "images/VelmoraImageFactory.h"
#include "platform/appkit/NSEvent.h"
#include "platform/foundation/SettingsFiles.h"
#include "platform/port/Desktop.h"
#include "platform/runtime/Class.h"

namespace velmora {

namespace {

/// The action of each pair of slots.
constexpr std::array<const char*, VelmoraSlotCount / 2> actionNames{
    "doGesture:triggerEvent:",
    "doScrollWheelVertical:triggerEvent:",
    "doScrollWheelHorizontal:triggerEvent:",
    "doScrollWheelBoth:triggerEvent:",
    "doJogDial:triggerEvent:",
};

/// The event's flag for each bit of a compact mask.
constexpr std::array<std::uint32_t, 5> flagsOfBits{
    NSShiftKeyMask, NSControlKeyMask, NSAlternateKeyMask, NSCommandKeyMask, NSFunctionKeyMask};

std::uint32_t flagsForMask(std::uint32_t mask) {
    std::uint32_t flags = 0;
    for (std::size_t bit = 0; bit < flagsOfBits.size(); ++bit) {
        if ((mask >> bit) & 1U) flags |= flagsOfBits[bit];
    }
    return flags;
}

std::string keyForSlot(const char* key, int index) {
    return key + std::to_string(index);
}

void take(const NSDictionary& from, const std::string& key, std::int32_t& field) {
    const PropertyList* value = from.objectForKey(key);
    if (value) field = value->intValue().value_or(field);
}

void take(const NSDictionary& from, const std::string& key, std::uint32_t& field) {
    const PropertyList* value = from.objectForKey(key);
    const std::optional<std::int32_t> number = value ? value->intValue() : std::nullopt;
    if (!number) return;
    // All 32 bits, so that a mask with bits that are no key is written back as it was read; more
    // than they hold is the most that they do.
    field = static_cast<std::uint32_t>(*number);
    if (*number < std::numeric_limits<std::int32_t>::max()) return;
    constexpr double most = std::numeric_limits<std::uint32_t>::max();
    field = static_cast<std::uint32_t>(std::min(value->doubleValue().value_or(most), most));
}

void take(const NSDictionary& from, const std::string& key, bool& field) {
    const PropertyList* value = from.objectForKey(key);
    if (value) field = value->boolValue().value_or(field);
}

void take(const NSDictionary& from, const std::string& key, double& field) {
    const PropertyList* value = from.objectForKey(key);
    if (value) field = value->doubleValue().value_or(field);
}

}  // namespace

Class& VelmoraDefaults::classObject() {
    static auto* object = new Class("VelmoraDefaults", &NSObject::classObject());
    return *object;
}

void VelmoraDefaults::initForMenuItem(const NSMenuItemRef& item) {
    if (item) vmMenu_.push_back(item);
    readDefaults();
    updateDefaults();
    callbacks_.activateMouseHandling();
}

void VelmoraDefaults::addMenuItem(const NSMenuItemRef& item) {
    std::erase_if(vmMenu_, [](const auto& shown) { return shown.expired(); });
    vmMenu_.push_back(item);
    item->setImage(VelmoraImageFactory::cursorImage());
}

std::string VelmoraDefaults::globalDefaultsFileName() {
    return settingsDirectory() + "/VelmoraDefaults.plist";
}

bool VelmoraDefaults::readDefaults() {
    FileSystem& files = desktop().files();
    const std::string file = globalDefaultsFileName();
    if (!files.fileExistsAtPath(file)) return false;
    const std::optional<NSDate> date = files.modificationDate(file);
    if (timeStamp_ && timeStamp_ == date) return false;
    SettingsFiles::Reading reading = SettingsFiles::ofProcess().read(files, file);
    if (reading.failed) return false;
    timeStamp_ = date;
    if (const NSDictionary* dictionary = reading.dictionary()) readFrom(*dictionary);
    return true;
}

void VelmoraDefaults::readFrom(const NSDictionary& dictionary) {
    for (int i = 0; i < VelmoraSlotCount; ++i) {
        Slot& slot = slots_[static_cast<std::size_t>(i)];
        take(dictionary, keyForSlot("modifiers", i), slot.modifiers);
        take(dictionary, keyForSlot("mouseButton", i), slot.mouseButton);
        take(dictionary, keyForSlot("isEnabled", i), slot.isEnabled);
    }
    take(dictionary, "gestureSize", gestureSize_);
    take(dictionary, "gestureTimeout", gestureTimeout_);
    take(dictionary, "makeGestureWindowKey", makeGestureWindowKey_);
    take(dictionary, "drawsFeedback", drawsFeedback_);
    take(dictionary, "flavor", flavor_);
}

NSDictionary VelmoraDefaults::dictionary() const {
    NSDictionary dictionary;
    for (int i = 0; i < VelmoraSlotCount; ++i) {
        const Slot& slot = slots_[static_cast<std::size_t>(i)];
        dictionary.append(keyForSlot("modifiers", i), std::int64_t{slot.modifiers});
        dictionary.append(keyForSlot("mouseButton", i), std::int64_t{slot.mouseButton});
        dictionary.append(keyForSlot("isEnabled", i), slot.isEnabled);
    }
    dictionary.append("gestureSize", std::int64_t{gestureSize_});
    dictionary.append("gestureTimeout", std::int64_t{gestureTimeout_});
    dictionary.append("makeGestureWindowKey", makeGestureWindowKey_);
    dictionary.append("drawsFeedback", drawsFeedback_);
    dictionary.append("flavor", flavor_);
    return dictionary;
}

void VelmoraDefaults::writeDefaults() {
    SettingsFiles::ofProcess().write(desktop().files(), dictionary(), globalDefaultsFileName());
}

void VelmoraDefaults::checkDefaults() {
    if (!readDefaults()) return;
    updateDefaults();
    if (ui_) message<void()>(*ui_, Selector::named("setValuesToUI"));
}

void VelmoraDefaults::showPanel() {
    if (!ui_) {
        // By its name: the controller is built on this class.
        Class* controller = Class::named("VelmoraDefaultsUI");
        ui_ = controller ? controller->alloc() : nullptr;
        if (!ui_) return;
        message<void(VelmoraDefaults&)>(*ui_, Selector::named("initWithDefaults:"), *this);
    }
    message<void()>(*ui_, Selector::named("show"));
}

void VelmoraDefaults::saveAndUpdateDefaults() {
    writeDefaults();
    updateDefaults();
}

void VelmoraDefaults::updateDefaults() {
    std::size_t entry = 0;
    for (int i = 0; i < VelmoraSlotCount; ++i) {
        const Slot& slot = slots_[static_cast<std::size_t>(i)];
        if (!slot.isEnabled || !isSettingLegalAtIndex(i)) continue;
        VelmoraModifiers[entry] = flagsForMask(slot.modifiers);
        VelmoraMouseButton[entry] = slot.mouseButton;
        VelmoraActions[entry] = Selector::named(actionNames[static_cast<std::size_t>(i / 2)]);
        ++entry;
    }
    VelmoraActions[entry] = Selector();
    // Squared as the 32-bit machine word that it is compared as.
    const auto size = static_cast<std::uint32_t>(gestureSize_);
    VelmoraGestureSize = static_cast<std::int32_t>(size * size);
    VelmoraGestureTimeout = gestureTimeout_;
    VelmoraGestureMakesKey = makeGestureWindowKey_;
    VelmoraGesturesDrawFeedback = drawsFeedback_;
    VelmoraImageFactory::setHue(flavor_);
    callbacks_.setTraceHue(flavor_);
    for (const auto& shown : vmMenu_) {
        if (const NSMenuItemRef item = shown.lock()) {
            item->setImage(VelmoraImageFactory::cursorImage());
        }
    }
}

bool VelmoraDefaults::isSettingLegalAtIndex(int index) const {
    const Slot& own = slot(index);
    // A slot that is on needs a combination.
    if (own.isEnabled && own.modifiers == 0 && own.mouseButton < 0) return false;
    // The left button alone is the host's, whether the slot is on or not.
    if (own.modifiers == 0 && own.mouseButton == 0) return false;
    if (own.modifiers == 0 && own.mouseButton < 0) return true;
    // No two slots share a combination, on or off: both are at fault.
    for (int i = 0; i < VelmoraSlotCount; ++i) {
        const Slot& other = slot(i);
        if (i != index && other.modifiers == own.modifiers &&
            other.mouseButton == own.mouseButton) {
            return false;
        }
    }
    return true;
}

const VelmoraDefaults::Slot& VelmoraDefaults::slot(int index) const {
    static const Slot off;
    const bool exists = index >= 0 && index < VelmoraSlotCount;
    return exists ? slots_[static_cast<std::size_t>(index)] : off;
}

VelmoraDefaults::Slot* VelmoraDefaults::slotToChange(int index) {
    const bool exists = index >= 0 && index < VelmoraSlotCount;
    return exists ? &slots_[static_cast<std::size_t>(index)] : nullptr;
}

std::uint32_t VelmoraDefaults::modifierForIndex(int index) const {
    return slot(index).modifiers;
}

void VelmoraDefaults::setModifier_forIndex(std::uint32_t modifier, int index) {
    if (Slot* slot = slotToChange(index)) slot->modifiers = modifier;
    saveAndUpdateDefaults();
}

std::int32_t VelmoraDefaults::mouseButtonForIndex(int index) const {
    return slot(index).mouseButton;
}

void VelmoraDefaults::setMouseButton_forIndex(std::int32_t button, int index) {
    if (Slot* slot = slotToChange(index)) slot->mouseButton = button;
    saveAndUpdateDefaults();
}

bool VelmoraDefaults::isEnabledForIndex(int index) const {
    return slot(index).isEnabled;
}

void VelmoraDefaults::setEnabled_forIndex(bool enabled, int index) {
    if (Slot* slot = slotToChange(index)) slot->isEnabled = enabled;
    saveAndUpdateDefaults();
}

void VelmoraDefaults::setGestureSize(std::int32_t size) {
    gestureSize_ = size;
    saveAndUpdateDefaults();
}

void VelmoraDefaults::setGestureTimeout(std::int32_t timeout) {
    gestureTimeout_ = timeout;
    saveAndUpdateDefaults();
}

void VelmoraDefaults::setMakeGestureWindowKey(bool makesKey) {
    makeGestureWindowKey_ = makesKey;
    saveAndUpdateDefaults();
}

void VelmoraDefaults::setDrawsFeedback(bool draws) {
    drawsFeedback_ = draws;
    saveAndUpdateDefaults();
}

void VelmoraDefaults::setFlavor(double flavor) {
    flavor_ = flavor;
    saveAndUpdateDefaults();
}

}  // namespace velmora
