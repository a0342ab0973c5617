#include "support/HeadlessHost.h"

namespace velmora {

namespace {

HostDescription hostNamed(const std::string& processName) {
    HostDescription host;
    host.processName = processName;
    return host;
}

Time ms(int milliseconds) {
    return std::chrono::milliseconds(milliseconds);
}

}  // namespace

ItemDescription item(std::string title, std::string action) {
    ItemDescription item;
    item.title = std::move(title);
    item.action = std::move(action);
    return item;
}

ItemDescription itemWithKey(std::string title, std::string action, std::string key,
                            std::uint32_t modifiers) {
    ItemDescription made = item(std::move(title), std::move(action));
    made.keyEquivalent = std::move(key);
    made.keyModifiers = modifiers;
    return made;
}

ItemDescription disabled(ItemDescription item) {
    item.enabled = false;
    return item;
}

ItemDescription separator() {
    ItemDescription item;
    item.kind = ItemDescription::Kind::separator;
    return item;
}

ItemDescription submenu(std::string title, std::vector<ItemDescription> items) {
    ItemDescription menu = item(std::move(title));
    menu.kind = ItemDescription::Kind::submenu;
    menu.items = std::move(items);
    return menu;
}

ItemDescription lazySubmenu(std::string title, std::vector<ItemDescription> items) {
    ItemDescription menu = submenu(std::move(title), std::move(items));
    menu.filling = ItemDescription::Filling::lazy;
    return menu;
}

HeadlessHost::HeadlessHost(const std::string& processName) : HeadlessHost(hostNamed(processName)) {}

HeadlessHost::HeadlessHost(const HostDescription& host)
    : session_(VELMORA_SOURCE_DIR "/resources"),
      process_(session_.addProcess(host)),
      scope_(process_) {}

NSMenuItemRef HeadlessHost::itemAt(const std::string& path) {
    return desktop().menuBar() ? menuItemAtPath(*desktop().menuBar(), path) : nullptr;
}

void HeadlessHost::writeSettings(const std::string& name, const std::string& contents) {
    const std::string path = settingsFile(name);
    files().memory().createDirectories(path.substr(0, path.rfind('/')));
    files().memory().writeAtomically(path, contents);
}

std::optional<std::string> HeadlessHost::readSettings(const std::string& name) {
    return files().memory().contentsOfFile(settingsFile(name), 1U << 20U);
}

void HeadlessHost::hold(std::uint32_t flag) {
    then([this, flag] { session_.user().hold(flag); });
}

void HeadlessHost::letGo(std::uint32_t flag) {
    then([this, flag] { session_.user().letGo(flag); });
}

void HeadlessHost::press(int button) {
    then([this, button] { session_.user().press(button); });
}

void HeadlessHost::release(int button) {
    then([this, button] { session_.user().release(button); });
}

void HeadlessHost::moveTo(float x, float y, int milliseconds) {
    then([this, x, y, milliseconds] { session_.user().move({x, y}, ms(milliseconds)); });
    pause(milliseconds);
}

void HeadlessHost::moveBy(float dx, float dy, int milliseconds) {
    then([this, dx, dy, milliseconds] {
        const NSPoint here = session_.user().hand();
        session_.user().move({here.x + dx, here.y + dy}, ms(milliseconds));
    });
    pause(milliseconds);
}

void HeadlessHost::stroke(const std::string& letters) {
    for (const char letter : letters) {
        const auto along = [letter](char back, char forth) {
            return letter == forth ? 60.0F : letter == back ? -60.0F : 0.0F;
        };
        moveBy(along('l', 'r'), along('d', 'u'), 100);
    }
}

void HeadlessHost::type(const std::string& key) {
    then([this, key] {
        if (const std::optional<Key> pressed = keyNamed(key)) {
            session_.user().keyDown(*pressed);
            session_.user().keyUp(*pressed);
        }
    });
}

void HeadlessHost::pause(int milliseconds) {
    session_.input().pause(ms(milliseconds));
}

void HeadlessHost::advance(int milliseconds) {
    pause(milliseconds);
    then([] {});
    run();
}

std::vector<std::string> HeadlessHost::texts(Transcript::Kind kind) const {
    return session_.transcript().texts(kind, process_.name());
}

}  // namespace velmora
