#include "platform/qt/panels/table/QtCellMenu.h"

#include <QGuiApplication>
#include <QScreen>

#include "platform/qt/base/QtGuard.h"
#include "platform/qt/base/QtImages.h"
#include "platform/qt/base/QtTitles.h"
#include "platform/qt/windows/QtWindows.h"

namespace velmora {

QtCellMenu::QtCellMenu(NSMenuRef menu, int first, Chosen chosen, QWidget* parent)
    : QMenu(parent), menu_(std::move(menu)), first_(first), chosen_(std::move(chosen)) {
    QtWindows::markAsOwn(*this);
    connect(this, &QMenu::aboutToShow, this,
            [this] { guarded("Opening a cell's menu", [this] { fill(); }); });
}

void QtCellMenu::fill() {
    if (std::exchange(filled_, true)) return;
    for (int i = first_; i < menu_->numberOfItems(); ++i) add(menu_->itemAtIndex(i));
}

void QtCellMenu::add(const NSMenuItemRef& item) {
    if (item->isSeparatorItem()) {
        addSeparator();
        return;
    }
    QAction* action = nullptr;
    if (item->hasSubmenu()) {
        auto* submenu = new QtCellMenu(item->submenu(), 0, chosen_, this);
        action = addMenu(submenu);
    } else {
        action = addAction(QString());
        connect(action, &QAction::triggered, this, [chosen = chosen_, item] {
            guarded("A choice from a cell's menu", [&] { chosen(*item); });
        });
    }
    action->setText(textFromTitle(item->title()));
    action->setEnabled(item->isEnabled());
    if (item->image()) action->setIcon(iconFromImage(*item->image()));
}

void QtCellMenu::open(const QRect& under) {
    // The choice comes after that, in the same pass of the loop.
    connect(this, &QMenu::aboutToHide, this, &QObject::deleteLater);
    setMinimumWidth(under.width());
    guarded("Opening a cell's menu", [this] { fill(); });
    QPoint place(under.left(), under.bottom() + 1);
    const QScreen* screen = QGuiApplication::screenAt(under.center());
    const int height = sizeHint().height();
    if (screen && place.y() + height > screen->availableGeometry().bottom() &&
        under.top() - height >= screen->availableGeometry().top()) {
        place.setY(under.top() - height);
    }
    // With none chosen to begin with: the toolkit would open the submenu of one that is, too.
    popup(place);
}

}  // namespace velmora
