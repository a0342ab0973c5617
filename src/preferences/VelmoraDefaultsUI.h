#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>

#include "platform/appkit/controls/NSButton.h"
#include "platform/appkit/controls/NSImageView.h"
#include "platform/appkit/controls/NSMatrix.h"
#include "platform/appkit/controls/NSSlider.h"
#include "platform/appkit/controls/NSTextField.h"
#include "platform/appkit/panels/NSPanel.h"
#include "preferences/VelmoraDefaults.h"

namespace velmora {

/// The controller of the preferences panel. It holds no values: each control writes into the
/// preferences, which save themselves and are in force at once. Made when the panel is first opened
/// and kept by the preferences.
class VelmoraDefaultsUI final : public NSObject {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    void initWithDefaults(VelmoraDefaults& defaults);
    void show();
    /// Has all controls show the preferences.
    void setValuesToUI();
    /// Red for a slot that may not be used; else black when it is on, light grey when it is off.
    void setTextColorAt(int slot);

    // Actions. A field shows what was stored of what was typed in it.

    void gestureSizeChanged(const Id& sender);
    void timeoutChanged(const Id& sender);
    void makeKeyChanged(const Id& sender);
    void drawFeedbackChanged(const Id& sender);
    void modifierChanged(const Id& sender);
    void mouseButtonChanged(const Id& sender);
    void mouseActivationChanged(const Id& sender);
    void flavorChanged(const Id& sender);

private:
    /// What the interface file does not bring of all that is used here; "" for nothing.
    std::string missingPart() const;
    void setTextColors();
    /// Selects the slot's button in its chooser, whose last cell stands for one that the others do
    /// not offer.
    void showButton(int slot);
    std::shared_ptr<NSMatrix> buttonChooser(int slot) const;

    std::shared_ptr<NSTextField> gestureSizeTF_;
    std::shared_ptr<NSButton> makeKeyCB_;
    std::shared_ptr<NSMatrix> modifierMatrix_;
    std::shared_ptr<NSMatrix> activationMatrix_;
    std::shared_ptr<NSMatrix> titleMatrix_;
    NSPanelRef panel_;
    std::shared_ptr<NSTextField> timeoutTF_;
    std::shared_ptr<NSButton> drawFeedbackCB_;
    std::shared_ptr<NSImageView> bigIcon_;
    std::shared_ptr<NSSlider> slider_;
    std::shared_ptr<NSMatrix> preconfiguredFlavors_;
    /// They own this controller.
    VelmoraDefaults* defaults_ = nullptr;
};

}  // namespace velmora
