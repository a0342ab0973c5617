#include "replay/HostParser.h"

#include "platform/headless/input/InputNames.h"

namespace velmora {

namespace {

ItemDescription parseCommand(ScenarioLine& line) {
    ItemDescription item;
    item.title = line.word("the item's title");
    while (!line.atEnd()) {
        if (line.take("runs")) {
            item.action = line.word("an action");
        } else if (line.take("key")) {
            const std::string name = line.word("a key");
            const std::optional<Key> key = keyNamed(name);
            if (!key) line.fail(name + " is no key");
            item.keyEquivalent = key->characters;
            std::uint32_t flag = 0;
            while (line.takeModifier(flag)) item.keyModifiers |= flag;
        } else if (line.take("disabled")) {
            item.enabled = false;
        } else if (line.take("opens enabled")) {
            item.enabledWhenOpened = true;
        } else if (line.take("opens disabled")) {
            item.enabledWhenOpened = false;
        } else {
            line.fail(
                "an item has: runs ACTION, key KEY MODIFIERS, disabled, opens enabled, "
                "opens disabled");
        }
    }
    return item;
}

ItemDescription parseSubmenu(ScenarioText& text, ScenarioLine& line) {
    ItemDescription menu;
    menu.kind = ItemDescription::Kind::submenu;
    menu.title = line.word("the menu's title");
    if (line.take("lazy")) menu.filling = ItemDescription::Filling::lazy;
    if (line.take("refilled")) menu.filling = ItemDescription::Filling::refilled;
    if (line.take("disabled")) menu.enabled = false;
    menu.items = parseItems(text, line);
    return menu;
}

/// Reads a line if it describes a context menu.
bool parseContextMenu(ScenarioText& text, ScenarioLine& line,
                      std::optional<ContextMenuDescription>& menu) {
    if (!line.take("context menu")) return false;
    if (menu) line.fail("there is a context menu already");
    menu.emplace();
    if (line.take("raises")) menu->raises = line.word("the exception's text");
    menu->items = parseItems(text, line);
    return true;
}

void parseScroll(ScenarioLine& line, ScrollDescription& scroll) {
    if (!line.take("shows")) line.fail("expected shows W H, the size of its document");
    scroll.document = line.size();
    if (line.take("from")) scroll.origin = line.point();
    if (line.take("lines")) scroll.line = line.size();
}

bool parseView(ScenarioText& text, ScenarioLine& line, std::vector<ViewDescription>& views) {
    ViewDescription view;
    if (line.take("text view")) {
        view.text.emplace().name = line.word("the text view's name");
    } else if (line.take("scroll view")) {
        view.scroll.emplace().name = line.word("the scroll view's name");
    } else if (!line.take("view")) {
        return false;
    }
    view.frame = line.frame();
    if (view.scroll) parseScroll(line, *view.scroll);
    if (view.text && line.take("holds")) view.text->contents = line.word("its text");
    if (view.text && line.take("focused")) view.text->focused = true;
    if ((view.text || view.scroll) && line.take("takes no keys")) view.takesKeys = false;
    text.block(line, [&](ScenarioLine& inner) {
        if (parseContextMenu(text, inner, view.contextMenu)) return;
        if (!parseView(text, inner, view.views)) {
            inner.fail("a view holds: view, text view, scroll view, context menu");
        }
    });
    views.push_back(std::move(view));
    return true;
}

DrawerDescription parseDrawer(ScenarioText& text, ScenarioLine& line) {
    DrawerDescription drawer;
    drawer.frame = line.frame();
    text.block(line, [&](ScenarioLine& inner) {
        if (!parseView(text, inner, drawer.views))
            inner.fail("a drawer holds: view, text view, scroll view");
    });
    return drawer;
}

}  // namespace

std::vector<ItemDescription> parseItems(ScenarioText& text, const ScenarioLine& line) {
    std::vector<ItemDescription> items;
    text.block(line, [&](ScenarioLine& inner) {
        if (inner.take("item")) {
            items.push_back(parseCommand(inner));
        } else if (inner.take("menu")) {
            items.push_back(parseSubmenu(text, inner));
            return;
        } else if (inner.take("separator")) {
            items.emplace_back().kind = ItemDescription::Kind::separator;
        } else {
            inner.fail("a menu holds: item, menu, separator");
        }
        inner.end();
        if (inner.opensBlock()) inner.fail("this holds nothing, so it opens no block");
    });
    return items;
}

WindowDescription parseWindow(ScenarioText& text, ScenarioLine& line) {
    WindowDescription window;
    window.title = line.word("the window's title");
    window.frame = line.frame();
    if (line.take("title bar")) {
        window.titleBar = static_cast<float>(line.number("a height", 0, 1000));
    }
    if (line.take("key")) window.key = true;
    text.block(line, [&](ScenarioLine& inner) {
        if (parseContextMenu(text, inner, window.contextMenu)) return;
        if (parseView(text, inner, window.views)) return;
        if (!inner.take("drawer")) {
            inner.fail("a window holds: view, text view, scroll view, drawer, context menu");
        }
        window.drawers.push_back(parseDrawer(text, inner));
    });
    return window;
}

HostDescription parseHost(ScenarioText& text, ScenarioLine& line) {
    HostDescription host;
    host.processName = line.word("the host's process name");
    if (line.take("language")) host.languages = {line.word("a language")};
    text.block(line, [&](ScenarioLine& inner) {
        if (inner.take("menu bar")) {
            if (host.menuBar) inner.fail("there is a menu bar already");
            host.menuBar = parseItems(text, inner);
        } else if (inner.take("window")) {
            host.windows.push_back(parseWindow(text, inner));
        } else {
            inner.fail("a host has: menu bar, window");
        }
    });
    return host;
}

}  // namespace velmora
