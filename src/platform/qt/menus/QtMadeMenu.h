#pragma once

#include <QAction>
#include <QMenu>
#include <QPointer>
#include <QWidget>
#include <string>
#include <vector>

namespace velmora {

/// What one item of a mirror stands for: an action of the host and, where it opens one, the menu.
struct QtMenuEntry {
    QPointer<QAction> action;
    /// As a person reads it; empty for a separator.
    std::string title;
    /// A QMenu, or the window itself for the menu that lists its commands. Null for a command.
    QPointer<QWidget> submenu;
};

/// The main menu of a window without a menu bar, made of what the window offers: the menus of its
/// buttons, then one menu with the commands that it has no menu for. That one is called like the
/// application, since a window's title goes with its document and paths are kept from run to run.
class QtMadeMenu {
public:
    explicit QtMadeMenu(QWidget& window) : window_(&window) {}

    /// The items of the main menu. The menu of the application stays the first once it has been
    /// found, whatever other menus are filled with.
    std::vector<QtMenuEntry> menus();

    /// The window's own actions, ours among them, those of its tool bars, and those of its buttons.
    static std::vector<QtMenuEntry> commands(const QWidget& window);

    /// Whether it has anything for its main menu, other than what is ours.
    static bool offersCommands(const QWidget& window);

    /// Whether the user may take the window for one that commands the application: no splash
    /// screen, no tool window, no tip.
    static bool isFor(const QWidget& window);

private:
    QPointer<QWidget> window_;
    QPointer<QMenu> first_;
    /// Stands for the window among the actions that open menus.
    QAction opener_;
};

}  // namespace velmora
