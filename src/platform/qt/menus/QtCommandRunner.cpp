#include "platform/qt/menus/QtCommandRunner.h"

#include <QWidget>
#include <algorithm>
#include <cstdio>

#include "platform/port/Desktop.h"
#include "platform/qt/base/QtGuard.h"
#include "platform/qt/menus/QtMenu.h"
#include "platform/qt/menus/QtMenuBars.h"
#include "platform/qt/windows/QtWindows.h"
#include "platform/runtime/NSLog.h"
#include "platform/runtime/ProcessWide.h"

namespace velmora {

namespace {

ProcessWide<std::optional<Time>> lastRelease;

/// From the title in the main menu to that of the item.
std::vector<std::string> titlesOf(const NSMenuItem& item, NSMenu*& mainMenu) {
    std::vector<std::string> titles{item.title()};
    mainMenu = item.menu();
    while (mainMenu && mainMenu->supermenu()) {
        titles.push_back(mainMenu->title());
        mainMenu = mainMenu->supermenu();
    }
    std::reverse(titles.begin(), titles.end());
    return titles;
}

void traceMiss(const std::string& path, const char* reason) {
    if (NSTraceEnabled()) NSTrace("did not run \"" + path + "\": " + reason);
}

}  // namespace

void noteReleaseForTrace() {
    lastRelease = desktop().now();
}

void traceRun(const std::string& path) {
    if (!NSTraceEnabled()) return;
    std::string line = "ran \"" + path + '"';
    if (const std::optional<Time> release = *lastRelease) {
        const std::chrono::duration<double, std::milli> since = desktop().now() - *release;
        char text[64];
        std::snprintf(text, sizeof text, " %.1f ms after the release", since.count());
        line += text;
    }
    NSTrace(line);
}

std::string joinedTitles(const std::vector<std::string>& titles) {
    std::string path;
    for (const std::string& title : titles) path = joinedPath(path, title);
    return path;
}

QtCommandRunner::QtCommandRunner(QtMenuBars& menuBars, QtWindows& windows)
    : menuBars_(menuBars), windows_(windows) {}

void QtCommandRunner::runLater(QtMenuItem& item) {
    NSMenu* outermost = nullptr;
    Request request{std::static_pointer_cast<QtMenuItem>(item.shared_from_this()),
                    titlesOf(item, outermost), nullptr};
    const auto* mirror = dynamic_cast<const QtMenu*>(outermost);
    if (mirror && mirror->isMainMenu()) request.root = mirror->widget();
    QMetaObject::invokeMethod(
        &context_, [this, request] { guarded("A command", [&] { resolveRoot(request); }); },
        Qt::QueuedConnection);
}

void QtCommandRunner::resolveRoot(Request request) {
    QWidget* root = menuBars_.currentRoot();
    if (root && root != request.root) {
        request.root = root;
        request.item = nullptr;
    }
    windows_.whenKeyIsSettled([this, request] { run(request); });
}

void QtCommandRunner::run(const Request& request) {
    const std::string path = joinedTitles(request.titles);
    if (!request.root) {
        traceMiss(path, "its window is gone");
        return;
    }
    const std::shared_ptr<QtMenu> mirror = menuBars_.mirrorOf(*request.root);
    std::shared_ptr<QtMenuItem> item = request.item;
    const bool known = item && item->menu() && item->hostAction();
    if (!known) item = find(*mirror, request.titles, 0);
    if (item && (!known || !item->isEnabled())) {
        const std::shared_ptr<NSObject> menu = item->menu()->shared_from_this();
        static_cast<NSMenu&>(*menu).update();
        if (!item->menu() || !item->hostAction()) item = find(*mirror, request.titles, 0);
    }
    if (!item || !item->isEnabled()) {
        traceMiss(path, item ? "it is disabled" : "the window's menus do not hold it");
        return;
    }
    const QPointer<QAction> action = item->hostAction();
    menuBars_.closeOpened();
    if (!action) {
        traceMiss(path, "the host has deleted it");
        return;
    }
    traceRun(path);
    action->trigger();
}

std::shared_ptr<QtMenuItem> QtCommandRunner::find(QtMenu& menu, const Titles& titles,
                                                  std::size_t level) {
    const bool last = level + 1 == titles.size();
    const auto search = [&]() -> std::shared_ptr<QtMenuItem> {
        for (int i = 0; i < menu.numberOfItems(); ++i) {
            const auto item = std::dynamic_pointer_cast<QtMenuItem>(menu.itemAtIndex(i));
            if (!item || item->isSeparatorItem() || item->title() != titles[level]) continue;
            if (last && !item->hasSubmenu() && item->hostAction()) return item;
            const auto submenu = std::dynamic_pointer_cast<QtMenu>(item->submenu());
            if (last || !submenu) continue;
            if (auto found = find(*submenu, titles, level + 1)) return found;
        }
        return nullptr;
    };
    if (auto found = search()) return found;
    // Filled only when it opens, perhaps.
    menu.update();
    return search();
}

}  // namespace velmora
