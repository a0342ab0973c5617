#pragma once

#include <QObject>
#include <QPointer>
#include <string>
#include <vector>

#include "platform/appkit/NSMenuItem.h"

class QWidget;

namespace velmora {

class QtMenu;
class QtMenuBars;
class QtMenuItem;
class QtWindows;

/// Runs the commands of the host's menus: not where they are asked for but in a later pass of the
/// loop, so that a modal dialog blocks nobody, and when the window that is to take the keys has
/// them.
class QtCommandRunner {
public:
    QtCommandRunner(QtMenuBars& menuBars, QtWindows& windows);

    /// Runs the item once, unless it is gone, disabled or blocked by then; the trace says why.
    /// When another main menu is in force by now, since another window is key, the item of the same
    /// titles in that one is the one that runs.
    void runLater(QtMenuItem& item);

private:
    /// The titles from the main menu down to the item.
    using Titles = std::vector<std::string>;
    struct Request {
        std::shared_ptr<QtMenuItem> item;
        Titles titles;
        /// Whose menus they are: a bar or a window.
        QPointer<QWidget> root;
    };
    void resolveRoot(Request request);
    void run(const Request& request);
    static std::shared_ptr<QtMenuItem> find(QtMenu& menu, const Titles& titles, std::size_t level);

    QtMenuBars& menuBars_;
    QtWindows& windows_;
    QObject context_;
};

/// Remembers that a mouse button was released now, for traceRun.
void noteReleaseForTrace();

/// The trace line of a command that runs now: its path, and how long after the last release of a
/// mouse button.
void traceRun(const std::string& path);

/// Titles as a path to read.
std::string joinedTitles(const std::vector<std::string>& titles);

}  // namespace velmora
