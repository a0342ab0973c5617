#pragma once

#include <QAction>
#include <QPointer>

#include "platform/appkit/NSMenuItem.h"

namespace velmora {

/// An item of a host's menu. It stands for whatever action of the host has its place and title, and
/// survives the exchange of that action.
class QtMenuItem final : public NSMenuItem {
public:
    explicit QtMenuItem(QAction& action);

    /// As it is for the user at this moment: also no when the menu that holds it is disabled, or a
    /// modal dialog blocks its window.
    bool isEnabled() const override;

    /// Null once the host has deleted it.
    QAction* hostAction() const { return hostAction_; }

    /// Binds the item to the action, under that title, and takes over its first shortcut as the key
    /// equivalent until the item is given another. `prefix` is the path of its menu.
    void setHostAction(QAction& action, const std::string& title, const std::string& prefix);

private:
    QPointer<QAction> hostAction_;
};

}  // namespace velmora
