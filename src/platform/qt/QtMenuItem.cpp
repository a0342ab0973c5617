#include "platform/qt/QtMenuItem.h"

#include "platform/qt/QtMenu.h"
#include "platform/qt/QtTitles.h"

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

void QtMenuItem::setHostAction(QAction& action, const std::string& prefix) {
    hostAction_ = &action;
    if (separator_) return;
    setTitle(titleFromText(action.text()));
    const QString name = action.objectName();
    NSMenuItem::setAction(
        Selector::named(name.isEmpty() ? joinedPath(prefix, title()) : name.toStdString()));
}

}  // namespace velmora
