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

namespace velmora {

/// The item that stands for an action of a context menu, to which the titles lead from there: the
/// same for who looks at the menu and for who hears of a pick in it.
NSMenuItemRef contextMenuItem(const QAction& action, const std::vector<std::string>& titles);

/// The context menus of the host's widgets. A widget opens its menu by code of its own, which often
/// waits until it is closed; here the menu opens without ever being on the screen, is looked at or
/// chosen from, and is closed.
class QtContextMenus {
public:
    /// What the widget's context menu at the point (of the whole screen) holds: a copy, whose items
    /// run in a later pass of the loop by opening the menu once more. Null when no menu opens.
    /// What the host's code throws meanwhile is thrown here, once everything is closed.
    NSMenuRef menuAt(QWidget& widget, QPoint global);

    /// For every top-level widget that is about to be shown.
    void noticeShow(QWidget& widget) {
        if (opening_) keepOffScreen(widget);
    }

private:
    using Titles = std::vector<std::string>;
    struct Opening;
    class Copy;
    friend class Copy;

    void openUnseen(QWidget& widget, QPoint global,
                    const std::function<void(Opening&, QMenu&)>& work);
    void keepOffScreen(QWidget& widget);
    void chooseLater(const QPointer<QWidget>& widget, QPoint global, const Titles& titles);
    void choose(QWidget& widget, QPoint global, const Titles& titles);

    QObject context_;
    /// The opening whose menus are to stay unseen; null at other times.
    std::shared_ptr<Opening> opening_;
};

}  // namespace velmora
