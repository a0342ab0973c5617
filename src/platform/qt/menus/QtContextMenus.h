#pragma once

#include <QMenu>
#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QWidget>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/appkit/NSMenu.h"
#include "platform/qt/windows/QtView.h"

namespace velmora {

/// The item that stands for an action of a context menu, to which the titles lead from there: the
/// same for who looks at the menu and for who hears of a pick in it.
NSMenuItemRef contextMenuItem(const QAction& action, const std::vector<std::string>& titles);

/// The context menus of the host's widgets. A widget opens its menu by code of its own, for a right
/// click, and often waits until it is closed; here it gets such a click, and the menu opens without
/// ever being on the screen, is looked at or chosen from, and is closed.
class QtContextMenus final : public QtViewMenus {
public:
    QtContextMenus();
    ~QtContextMenus();
    QtContextMenus(const QtContextMenus&) = delete;
    QtContextMenus& operator=(const QtContextMenus&) = delete;

    /// What the context menu for a right click at the point (of the whole screen) in the widget
    /// holds: a copy, whose items run in a later pass of the loop. A menu that the host does not
    /// wait for stays open until that pass, unseen; another one is opened once more for the choice,
    /// unless what lies there has moved since. Null when no menu opens. What the host's code throws
    /// meanwhile is thrown here, once everything is closed.
    NSMenuRef menuAt(QWidget& widget, QPoint global) override;

    /// For every top-level widget that is about to be shown.
    void noticeShow(QWidget& widget) {
        if (opening_) keepOffScreen(widget);
    }

private:
    using Titles = std::vector<std::string>;
    struct Place;
    struct Opening;
    struct Recent;
    class Copy;
    friend class Copy;

    std::shared_ptr<Opening> open(const Place& place, const Titles& choice);
    void releaseLater(const std::shared_ptr<Opening>& opening);
    void settleLater(const std::shared_ptr<Opening>& opening);
    void settle(const std::shared_ptr<Opening>& opening);
    static void use(Opening& opening);
    void end(Opening& opening);
    void keepOffScreen(QWidget& widget);
    void chooseLater(const Place& place, const Titles& titles);

    QObject context_;
    /// The opening whose menus are to stay unseen; null at other times.
    std::shared_ptr<Opening> opening_;
    /// Until the next pass of the loop; null at other times.
    std::unique_ptr<Recent> recent_;
};

}  // namespace velmora
