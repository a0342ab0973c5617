#include "preferences/VelmoraDefaultsUI.h"

#include <algorithm>

#include "images/VelmoraImageFactory.h"
#include "platform/appkit/drawing/NSColor.h"
#include "platform/appkit/panels/NSNibLoading.h"
#include "platform/foundation/NSBundle.h"
#include "platform/runtime/NSLog.h"
#include "platform/runtime/Outlet.h"

namespace velmora {

namespace {

/// A slot has one cell of the modifier matrix for each modifier key.
constexpr int modifierBits = 5;
/// The view tag of the first slot's mouse-button chooser; those of the others follow.
constexpr int firstChooserTag = 10;
/// A preset's tag is its hue in hundredths.
constexpr double tagsPerHue = 100.0;

std::int32_t intValueOf(const Id& sender) {
    const auto control = std::dynamic_pointer_cast<NSControl>(sender);
    return control ? control->intValue() : 0;
}

}  // namespace

Class& VelmoraDefaultsUI::classObject() {
    using Self = VelmoraDefaultsUI;
    static auto* object =
        &(new Class("VelmoraDefaultsUI", &NSObject::classObject()))
             ->makes<Self>()
             .method<&Outlet<&Self::gestureSizeTF_>::set>("setGestureSizeTF:")
             .method<&Outlet<&Self::makeKeyCB_>::set>("setMakeKeyCB:")
             .method<&Outlet<&Self::modifierMatrix_>::set>("setModifierMatrix:")
             .method<&Outlet<&Self::activationMatrix_>::set>("setActivationMatrix:")
             .method<&Outlet<&Self::titleMatrix_>::set>("setTitleMatrix:")
             .method<&Outlet<&Self::panel_>::set>("setPanel:")
             .method<&Outlet<&Self::timeoutTF_>::set>("setTimeoutTF:")
             .method<&Outlet<&Self::drawFeedbackCB_>::set>("setDrawFeedbackCB:")
             .method<&Outlet<&Self::bigIcon_>::set>("setBigIcon:")
             .method<&Outlet<&Self::slider_>::set>("setSlider:")
             .method<&Outlet<&Self::preconfiguredFlavors_>::set>("setPreconfiguredFlavors:")
             .method<&Self::initWithDefaults>("initWithDefaults:")
             .method<&Self::show>("show")
             .method<&Self::setValuesToUI>("setValuesToUI")
             .method<&Self::gestureSizeChanged>("gestureSizeChanged:")
             .method<&Self::timeoutChanged>("timeoutChanged:")
             .method<&Self::makeKeyChanged>("makeKeyChanged:")
             .method<&Self::drawFeedbackChanged>("drawFeedbackChanged:")
             .method<&Self::modifierChanged>("modifierChanged:")
             .method<&Self::mouseButtonChanged>("mouseButtonChanged:")
             .method<&Self::mouseActivationChanged>("mouseActivationChanged:")
             .method<&Self::flavorChanged>("flavorChanged:");
    return *object;
}

namespace {

[[maybe_unused]] const Class& registered = VelmoraDefaultsUI::classObject();

}  // namespace

void VelmoraDefaultsUI::initWithDefaults(VelmoraDefaults& defaults) {
    defaults_ = &defaults;
    if (!loadNibNamed_owner(NSBundle::bundleForClass(), "Preferences", shared_from_this())) return;
    if (const std::string missing = missingPart(); !missing.empty()) {
        NSLog("interface/Preferences.plist: " + missing + " is missing or of another kind");
        panel_ = nullptr;
        return;
    }
    setValuesToUI();
    for (const auto& cell : preconfiguredFlavors_->cells()) {
        cell->setImage(VelmoraImageFactory::cursorWithHue(cell->tag() / tagsPerHue));
    }
}

std::string VelmoraDefaultsUI::missingPart() const {
    const std::pair<const char*, bool> outlets[] = {
        {"panel", panel_ != nullptr},
        {"gestureSizeTF", gestureSizeTF_ != nullptr},
        {"timeoutTF", timeoutTF_ != nullptr},
        {"makeKeyCB", makeKeyCB_ != nullptr},
        {"drawFeedbackCB", drawFeedbackCB_ != nullptr},
        {"modifierMatrix", modifierMatrix_ != nullptr},
        {"activationMatrix", activationMatrix_ != nullptr},
        {"titleMatrix", titleMatrix_ != nullptr},
        {"slider", slider_ != nullptr},
        {"preconfiguredFlavors", preconfiguredFlavors_ != nullptr},
        {"bigIcon", bigIcon_ != nullptr},
    };
    for (const auto& [name, isThere] : outlets) {
        if (!isThere) return std::string("the outlet ") + name;
    }
    for (int slot = 0; slot < VelmoraSlotCount; ++slot) {
        const std::string number = std::to_string(slot);
        if (!std::dynamic_pointer_cast<NSTextFieldCell>(titleMatrix_->cellWithTag(slot))) {
            return "the title with the tag " + number;
        }
        if (!activationMatrix_->cellWithTag(slot)) return "the switch with the tag " + number;
        const auto chooser = buttonChooser(slot);
        if (!chooser || chooser->cells().size() < 2) return "the chooser of slot " + number;
    }
    for (int tag = 0; tag < VelmoraSlotCount * modifierBits; ++tag) {
        if (!modifierMatrix_->cellWithTag(tag)) {
            return "the modifier with the tag " + std::to_string(tag);
        }
    }
    return {};
}

void VelmoraDefaultsUI::show() {
    if (panel_) panel_->makeKeyAndOrderFront();
}

std::shared_ptr<NSMatrix> VelmoraDefaultsUI::buttonChooser(int slot) const {
    return std::dynamic_pointer_cast<NSMatrix>(panel_->viewWithTag(slot + firstChooserTag));
}

void VelmoraDefaultsUI::showButton(int slot) {
    const std::int32_t button = defaults_->mouseButtonForIndex(slot);
    NSMatrix& chooser = *buttonChooser(slot);
    const std::vector<NSCellRef>& cells = chooser.cells();
    const bool isOffered = std::any_of(cells.begin(), cells.end() - 1, [&](const NSCellRef& cell) {
        return cell->tag() == button;
    });
    const auto other = std::dynamic_pointer_cast<NSButtonCell>(cells.back());
    if (other) {
        other->setTransparent(isOffered);
        other->setEnabled(!isOffered);
    }
    if (other && !isOffered) {
        other->setTag(button);
        other->setTitle(std::to_string(std::int64_t{button} + 1));
        other->setImagePosition(NSImageLeft);
    }
    chooser.selectCellWithTag(button);
}

void VelmoraDefaultsUI::setValuesToUI() {
    if (!panel_) return;
    for (int slot = 0; slot < VelmoraSlotCount; ++slot) {
        const std::uint32_t modifiers = defaults_->modifierForIndex(slot);
        for (int bit = 0; bit < modifierBits; ++bit) {
            modifierMatrix_->cellWithTag(slot * modifierBits + bit)
                ->setIntValue(static_cast<std::int32_t>(modifiers >> bit & 1U));
        }
        showButton(slot);
        activationMatrix_->cellWithTag(slot)->setIntValue(defaults_->isEnabledForIndex(slot) ? 1
                                                                                             : 0);
    }
    setTextColors();
    gestureSizeTF_->setIntValue(defaults_->gestureSize());
    makeKeyCB_->setIntValue(defaults_->makeGestureWindowKey() ? 1 : 0);
    drawFeedbackCB_->setIntValue(defaults_->drawsFeedback() ? 1 : 0);
    timeoutTF_->setIntValue(defaults_->gestureTimeout());
    bigIcon_->setImage(VelmoraImageFactory::iconWithHue(defaults_->flavor()));
    slider_->setDoubleValue(defaults_->flavor());
}

void VelmoraDefaultsUI::setTextColorAt(int slot) {
    const NSColor usable =
        defaults_->isEnabledForIndex(slot) ? NSColor::blackColor() : NSColor::lightGrayColor();
    const auto title = std::dynamic_pointer_cast<NSTextFieldCell>(titleMatrix_->cellWithTag(slot));
    title->setTextColor(defaults_->isSettingLegalAtIndex(slot) ? usable : NSColor::redColor());
}

void VelmoraDefaultsUI::setTextColors() {
    for (int slot = 0; slot < VelmoraSlotCount; ++slot) setTextColorAt(slot);
}

void VelmoraDefaultsUI::gestureSizeChanged(const Id& sender) {
    defaults_->setGestureSize(intValueOf(sender));
    gestureSizeTF_->setIntValue(defaults_->gestureSize());
}

void VelmoraDefaultsUI::timeoutChanged(const Id& sender) {
    defaults_->setGestureTimeout(intValueOf(sender));
    timeoutTF_->setIntValue(defaults_->gestureTimeout());
}

void VelmoraDefaultsUI::makeKeyChanged(const Id& sender) {
    defaults_->setMakeGestureWindowKey(intValueOf(sender) != 0);
}

void VelmoraDefaultsUI::drawFeedbackChanged(const Id& sender) {
    defaults_->setDrawsFeedback(intValueOf(sender) != 0);
}

void VelmoraDefaultsUI::modifierChanged(const Id& /*sender*/) {
    for (int slot = 0; slot < VelmoraSlotCount; ++slot) {
        std::uint32_t modifiers = 0;
        for (int bit = 0; bit < modifierBits; ++bit) {
            const auto cell = modifierMatrix_->cellWithTag(slot * modifierBits + bit);
            if (cell->intValue() != 0) modifiers |= 1U << static_cast<unsigned>(bit);
        }
        defaults_->setModifier_forIndex(modifiers, slot);
    }
    setTextColors();
}

void VelmoraDefaultsUI::mouseButtonChanged(const Id& /*sender*/) {
    for (int slot = 0; slot < VelmoraSlotCount; ++slot) {
        if (const auto chosen = buttonChooser(slot)->selectedCell()) {
            defaults_->setMouseButton_forIndex(chosen->tag(), slot);
        }
    }
    setTextColors();
}

void VelmoraDefaultsUI::mouseActivationChanged(const Id& /*sender*/) {
    for (int slot = 0; slot < VelmoraSlotCount; ++slot) {
        const bool enabled = activationMatrix_->cellWithTag(slot)->intValue() != 0;
        if (enabled != defaults_->isEnabledForIndex(slot)) {
            defaults_->setEnabled_forIndex(enabled, slot);
        }
    }
    setTextColors();
}

void VelmoraDefaultsUI::flavorChanged(const Id& sender) {
    double hue = slider_->doubleValue();
    if (sender != slider_) {
        const auto chosen = preconfiguredFlavors_->selectedCell();
        if (!chosen) return;
        hue = chosen->tag() / tagsPerHue;
        slider_->setDoubleValue(hue);
    }
    defaults_->setFlavor(hue);
    bigIcon_->setImage(VelmoraImageFactory::iconWithHue(hue));
}

}  // namespace velmora
