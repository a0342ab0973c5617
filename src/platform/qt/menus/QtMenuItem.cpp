#include "platform/qt/menus/QtMenuItem.h"

#include "platform/qt/base/QtKeys.h"
#include "platform/qt/menus/QtMenu.h"

namespace velmora {

QtMenuItem::QtMenuItem(QAction& action) : hostAction_(&action) {
    separator_ = action.isSeparator();
}

bool QtMenuItem::isEnabled() const {
    if (separator_ || !hostAction_ || !hostAction_->isEnabled() || !hostAction_->isVisible()) {
        return false;
    }
    const auto* holder = dynamic_cast<const QtMenu*>(menu());
    return holder && holder->isReachable();
}

void QtMenuItem::setHostAction(QAction& action, const std::string& title,
                               const std::string& prefix) {
    hostAction_ = &action;
    if (separator_) {
        // Else the only separator of a host whose commands all have actions would be the one item
        // that a definition without an action stands for.
        static const Selector separator = Selector::named("separator");
        NSMenuItem::setAction(separator);
        return;
    }
    const QString name = action.objectName();
    const bool enabled = action.isEnabled();
    NSMenuItem::setAction(
        Selector::named(name.isEmpty() ? joinedPath(prefix, title) : name.toStdString()));
    // First, since whoever hears of another change finds the item and its action in agreement. The
    // action may be gone afterwards.
    if (!hasGivenKeyEquivalent()) {
        KeyEquivalent equivalent = keyEquivalentFor(action.shortcut());
        followKeyEquivalent(std::move(equivalent.key), equivalent.modifiers);
    }
    setTitle(title);
    // Only for those who hear of the change: isEnabled() asks the action itself.
    setEnabled(enabled);
}

}  // namespace velmora
