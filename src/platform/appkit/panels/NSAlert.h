#pragma once

#include <memory>
#include <string>

#include "platform/foundation/files/PropertyList.h"
#include "platform/runtime/NSObject.h"

namespace velmora {

class NSPanel;

/// Which button of an alert was pressed; the platform's numbers. Closing the alert, as Escape does,
/// counts as the alternate button, or as the default one where there is none.
enum NSAlertReturn : int {
    NSAlertDefaultReturn = 1,
    NSAlertAlternateReturn = 0,
    NSAlertOtherReturn = -1,
};

// Texts are shown as they are given. An empty title is the platform's "Alert", an empty default
// button its "OK"; an empty alternate or other button is none.

/// Shows the alert as the only window that takes input, and waits for what the user presses.
int NSRunAlertPanel(const std::string& title, const std::string& message,
                    const std::string& defaultButton, const std::string& alternateButton,
                    const std::string& otherButton);

/// As above, for an alert that is no warning.
int NSRunInformationalAlertPanel(const std::string& title, const std::string& message,
                                 const std::string& defaultButton,
                                 const std::string& alternateButton,
                                 const std::string& otherButton);

/// Opens the alert over the panel, which takes no input meanwhile, and returns. What the user
/// presses is told to the delegate, which is not kept alive, once the alert no longer shows:
/// `void(NSPanel&, int, const PropertyList&)`, the alert's panel, the NSAlertReturn and the
/// context. An alert that is open over the panel already stays, and this one is not shown; nobody
/// hears of an alert that is left when its panel closes. `spokenMessage` is what is said instead of
/// the message, "" for the message itself.
void NSBeginAlertSheet(const std::string& title, const std::string& defaultButton,
                       const std::string& alternateButton, const std::string& otherButton,
                       NSPanel& panel, const Id& delegate, Selector didEndSelector,
                       const PropertyList& contextInfo, const std::string& message,
                       const std::string& spokenMessage = {});

}  // namespace velmora
