#include "platform/qt/menus/QtMadeMenu.h"

#include <QAbstractButton>
#include <QGuiApplication>
#include <QPushButton>
#include <QTextDocument>
#include <QToolBar>
#include <QToolButton>
#include <algorithm>
#include <unordered_set>

#include "platform/qt/base/QtTitles.h"
#include "platform/qt/menus/QtOwnMenus.h"
#include "platform/qt/windows/QtWindows.h"

namespace velmora {

namespace {

/// Deeper items do not tell how large a menu is.
constexpr int deepestCounted = 4;

/// A part of the window, whose dialogs are children too.
template <class Widget>
QList<Widget*> partsOf(const QWidget& window) {
    QList<Widget*> parts = window.findChildren<Widget*>();
    const auto isForeign = [&](const Widget* part) {
        // The toolkit's own: what a tool bar has no room for, a calendar's months.
        return part->window() != &window || part->objectName().startsWith(QLatin1String("qt_"));
    };
    parts.erase(std::remove_if(parts.begin(), parts.end(), isForeign), parts.end());
    return parts;
}

QMenu* menuOf(const QAbstractButton& button) {
    if (const auto* push = qobject_cast<const QPushButton*>(&button)) return push->menu();
    const auto* tool = qobject_cast<const QToolButton*>(&button);
    if (!tool) return nullptr;
    if (QMenu* menu = tool->menu()) return menu;
    const QAction* action = tool->defaultAction();
    return action ? action->menu() : nullptr;
}

/// What a click runs; null where that opens a menu.
QAction* commandOf(const QToolButton& button) {
    QAction* action = button.defaultAction();
    const bool opens = button.popupMode() == QToolButton::InstantPopup && menuOf(button);
    return opens ? nullptr : action;
}

/// The first that can be read. Buttons with a picture, or with a mark like three lines, have their
/// name elsewhere.
std::string readable(const QStringList& candidates) {
    for (const QString& candidate : candidates) {
        const bool read = std::any_of(candidate.begin(), candidate.end(),
                                      [](QChar letter) { return letter.isLetterOrNumber(); });
        if (read && !Qt::mightBeRichText(candidate)) return titleFromText(candidate);
    }
    return {};
}

std::string titleOf(const QAbstractButton& button, const QMenu& menu) {
    const std::string title =
        readable({button.text(), menu.title(), menu.menuAction()->text(), button.accessibleName(),
                  button.toolTip(), button.objectName(), menu.objectName()});
    return title.empty() ? "Menu" : title;
}

/// Names that do not depend on the language.
bool isNamedApplicationMenu(const QAbstractButton& button, const QMenu& menu) {
    static const QStringList marks{QStringLiteral("hamburger"),       QStringLiteral("mainmenu"),
                                   QStringLiteral("main-menu"),       QStringLiteral("main_menu"),
                                   QStringLiteral("appmenu"),         QStringLiteral("open-menu"),
                                   QStringLiteral("application-menu")};
    const QStringList names{button.objectName(), menu.objectName(), button.icon().name()};
    return std::any_of(names.begin(), names.end(), [](const QString& name) {
        return std::any_of(marks.begin(), marks.end(), [&](const QString& mark) {
            return name.contains(mark, Qt::CaseInsensitive);
        });
    });
}

int countCommands(const QMenu& menu, int depth) {
    int count = 0;
    const QList<QAction*> actions = menu.actions();
    for (const QAction* action : actions) {
        if (action->isSeparator() || !action->isVisible()) continue;
        const QMenu* submenu = depth < deepestCounted ? action->menu() : nullptr;
        count += submenu ? countCommands(*submenu, depth + 1) : 1;
    }
    return count;
}

struct ButtonMenu {
    QMenu* menu;
    std::string title;
    bool isNamed;
};

std::vector<ButtonMenu> buttonMenus(const QWidget& window) {
    std::vector<ButtonMenu> menus;
    for (const QAbstractButton* button : partsOf<QAbstractButton>(window)) {
        QMenu* menu = button->isEnabledTo(&window) ? menuOf(*button) : nullptr;
        const bool known = std::any_of(menus.begin(), menus.end(),
                                       [&](const ButtonMenu& other) { return other.menu == menu; });
        if (!menu || known) continue;
        menus.push_back({menu, titleOf(*button, *menu), isNamedApplicationMenu(*button, *menu)});
    }
    return menus;
}

QMenu* applicationMenu(const std::vector<ButtonMenu>& menus) {
    const auto best =
        std::max_element(menus.begin(), menus.end(), [](const ButtonMenu& a, const ButtonMenu& b) {
            if (a.isNamed != b.isNamed) return b.isNamed;
            return countCommands(*a.menu, 0) < countCommands(*b.menu, 0);
        });
    return best != menus.end() ? best->menu : nullptr;
}

}  // namespace

std::vector<QtMenuEntry> QtMadeMenu::menus() {
    if (!window_) return {};
    std::vector<ButtonMenu> found = buttonMenus(*window_);
    const auto isFirst = [&](const ButtonMenu& menu) { return menu.menu == first_; };
    if (std::none_of(found.begin(), found.end(), isFirst)) first_ = applicationMenu(found);
    std::stable_partition(found.begin(), found.end(), isFirst);
    std::vector<QtMenuEntry> entries;
    for (ButtonMenu& menu : found) {
        entries.push_back({menu.menu->menuAction(), std::move(menu.title), menu.menu});
    }
    const QString name = QGuiApplication::applicationDisplayName();
    entries.push_back({&opener_, titleFromText(name), window_});
    return entries;
}

std::vector<QtMenuEntry> QtMadeMenu::commands(const QWidget& window) {
    std::vector<QtMenuEntry> entries;
    std::unordered_set<const QAction*> known;
    const auto add = [&](QAction* action, QMenu* menu) {
        const bool own = QtOwnMenus::isOwn(*action);
        std::string title = readable({action->text(), action->toolTip()});
        if (title.empty()) title = titleFromText(action->text());
        const bool read = !title.empty() || own || action->isSeparator();
        if (!read || !(action->isVisible() || own) || !known.insert(action).second) return;
        entries.push_back({action, action->isSeparator() ? std::string() : std::move(title), menu});
    };
    const QList<QAction*> actions = window.actions();
    for (QAction* action : actions) add(action, action->menu());
    for (const QToolBar* bar : partsOf<QToolBar>(window)) {
        const QList<QAction*> held = bar->actions();
        for (QAction* action : held) {
            // The menus of buttons are menus of their own.
            const auto* button = qobject_cast<const QToolButton*>(bar->widgetForAction(action));
            if (!action->isSeparator() && (!button || commandOf(*button))) add(action, nullptr);
        }
    }
    for (const QToolButton* button : partsOf<QToolButton>(window)) {
        if (QAction* action = commandOf(*button)) add(action, nullptr);
    }
    return entries;
}

bool QtMadeMenu::offersCommands(const QWidget& window) {
    const std::vector<QtMenuEntry> entries = commands(window);
    return std::any_of(
               entries.begin(), entries.end(),
               [](const QtMenuEntry& entry) { return !QtOwnMenus::isOwn(*entry.action); }) ||
           !buttonMenus(window).empty();
}

bool QtMadeMenu::isFor(const QWidget& window) {
    const Qt::WindowType type = window.windowType();
    return window.isVisible() && (type == Qt::Window || type == Qt::Dialog) &&
           !(window.windowFlags() & Qt::WindowTransparentForInput) &&
           !(window.windowFlags() & Qt::BypassWindowManagerHint) &&
           !window.testAttribute(Qt::WA_DontShowOnScreen) && !QtWindows::isOwn(window);
}

}  // namespace velmora
