#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "commands/VelmoraShortcuts.h"
#include "commands/VelmoraTriggers.h"
#include "platform/appkit/NSApplication.h"
#include "platform/foundation/SettingsFiles.h"
#include "platform/headless/HeadlessSession.h"

namespace {

using namespace velmora;

void require(bool holds) {
    if (!holds) std::abort();
}

/// The input, a byte a choice; zeros when it has ended.
class Choices {
public:
    Choices(const std::uint8_t* data, std::size_t size) : next_(data), end_(data + size) {}
    bool ended() const { return next_ == end_; }
    std::size_t below(std::size_t limit) { return limit && !ended() ? *next_++ % limit : 0; }
    template <class T>
    T oneOf(const std::vector<T>& values) {
        return values[below(values.size())];
    }

private:
    const std::uint8_t* next_;
    const std::uint8_t* end_;
};

const std::vector<std::string> titles{"New", "Save", "Zoom", "a/b", "", "In"};
const std::vector<std::string> menuTitles{"File", "View", "Zoom"};
const std::vector<std::string> actions{"new:", "save:", "in:", ""};
const std::vector<std::string> keys{"a", "b", "A", "", "m3"};
const std::vector<std::uint32_t> masks{NSCommandKeyMask, 0, NSCommandKeyMask | NSShiftKeyMask};
const std::vector<std::string> paths{"File/New", "File/Save",    "View/Zoom/In", "View/a/b",
                                     "View/New", "File/Zoom/In", "New",          ""};
const std::vector<std::string> triggers{"8a", "8b", "8A", "0", "0a", "CA", "8m3", "", "aa"};

ItemDescription randomItem(Choices& choices, int depth) {
    ItemDescription item;
    const std::size_t kind = choices.below(depth < 3 ? 7 : 4);
    if (kind == 3) {
        item.kind = ItemDescription::Kind::separator;
    } else if (kind > 3) {
        item.kind = ItemDescription::Kind::submenu;
        item.title = choices.oneOf(menuTitles);
        item.filling = kind == 4   ? ItemDescription::Filling::present
                       : kind == 5 ? ItemDescription::Filling::lazy
                                   : ItemDescription::Filling::refilled;
        for (std::size_t i = choices.below(4); i > 0; --i) {
            item.items.push_back(randomItem(choices, depth + 1));
        }
    } else {
        item.title = choices.oneOf(titles);
        item.action = choices.oneOf(actions);
        item.keyEquivalent = choices.oneOf(keys);
        item.keyModifiers = item.keyEquivalent.empty() ? 0 : choices.oneOf(masks);
        item.enabled = choices.below(4) != 0;
        if (choices.below(4) == 0) item.enabledWhenOpened = choices.below(2) == 0;
    }
    return item;
}

std::vector<ItemDescription> randomBar(Choices& choices) {
    std::vector<ItemDescription> bar;
    for (std::size_t i = choices.below(5); i > 0; --i) bar.push_back(randomItem(choices, 1));
    return bar;
}

/// A host, its menus and the component.
class Play {
public:
    Play(Choices& choices, HeadlessProcess& process) : choices_(choices), process_(process) {
        NSArray list;
        for (std::size_t i = choices.below(7); i > 0; --i) {
            NSDictionary record;
            record.append("Path", choices.oneOf(paths));
            record.append("Selector", choices.oneOf(actions));
            record.append("Trigger", choices.oneOf(triggers));
            list.emplace_back(std::move(record));
        }
        const std::string file = shortcuts_->appSpecificSettingsFileName();
        SettingsFiles::ofProcess().write(process_.desktop().files(), list, file);
        process_.desktop().setOnCommand([this](NSMenuItem&) { ++ran_; });
        process_.desktop().setMenuBar(randomBar(choices));
        shortcuts_->init();
    }

    void run() {
        while (!choices_.ended()) step();
        // Each change of the menus retries what is pending, also what the one before it left.
        for (int i = 0; i < 3; ++i) {
            NSApp().mainMenu()->addItem(NSMenuItem::initWithTitle_action_keyEquivalent(
                "Last " + std::to_string(i), Selector::named("last:"), ""));
        }
        check();
    }

private:
    void step() {
        const NSMenuRef menu = randomMenu();
        const int index = static_cast<int>(choices_.below(5));
        const NSMenuItemRef item = menu->itemAtIndex(index);
        switch (choices_.below(10)) {
            case 0: addTo(*menu); break;
            case 1: menu->removeItemAtIndex(index); break;
            case 2:
                if (item && !item->isSeparatorItem()) item->setTitle(choices_.oneOf(titles));
                break;
            case 3:
                if (item && !item->isSeparatorItem()) item->setEnabled(!item->isEnabled());
                break;
            case 4:
                if (item && !item->hasSubmenu()) {
                    const NSMenuRef target = randomMenu();
                    target->insertItem_atIndex(item, static_cast<int>(choices_.below(5)));
                }
                break;
            case 5:
                if (item && !item->isSeparatorItem() && !item->hasSubmenu()) {
                    const std::string& key = choices_.oneOf(keys);
                    item->setKeyEquivalent_modifierMask(key, choices_.oneOf(masks));
                }
                break;
            case 6:  // a menu with its items goes and comes
                if (item) {
                    menu->removeItemAtIndex(index);
                    menu->insertItem_atIndex(item, index);
                }
                break;
            case 7: process_.desktop().setMenuBar(randomBar(choices_)); break;
            case 8: openMenu(*menu); break;
            case 9: press(); break;
        }
    }

    void addTo(NSMenu& menu) {
        if (auto* own = dynamic_cast<HeadlessMenu*>(&menu)) own->append(randomItem(choices_, 2));
    }

    void press() {
        NSEvent::Fields fields;
        fields.type = NSKeyDown;
        fields.modifierFlags = choices_.oneOf(masks);
        fields.charactersIgnoringModifiers = choices_.oneOf(keys);
        if (fields.charactersIgnoringModifiers == "m3") {
            fields.type = NSOtherMouseDown;
            fields.buttonNumber = 2;
        }
        const int before = ran_;
        const bool handled = shortcuts_->handleEvent(std::make_shared<NSEvent>(fields));
        // The menu may disable it when it is brought up to date.
        require(ran_ == before || (handled && ran_ == before + 1));
    }

    NSMenuRef randomMenu() {
        NSMenuRef menu = NSApp().mainMenu();
        for (int depth = 0; depth < 3 && choices_.below(3) != 0; ++depth) {
            const NSMenuItemRef item = menu->itemAtIndex(static_cast<int>(choices_.below(4)));
            if (item && item->hasSubmenu()) menu = item->submenu();
        }
        return menu;
    }

    /// Each definition that can be written is in force, unless an earlier one has taken its item or
    /// its combination since.
    void check() {
        shortcuts_->activateSettings();
        const auto& definitions = shortcuts_->settings()->array();
        const auto isWritten = [](const VelmoraSetting& definition) {
            return !definition.trigger().empty() && !isMouseTrigger(definition.trigger());
        };
        for (auto definition = definitions.begin(); definition != definitions.end(); ++definition) {
            const NSMenuItemRef item = shortcuts_->findMenuItem(**definition);
            if (!item || !isWritten(**definition)) continue;
            const std::string key = keyForTrigger((*definition)->trigger());
            const std::uint32_t modifiers = modifierFlagsForTrigger((*definition)->trigger());
            const bool yields =
                std::any_of(definitions.begin(), definition, [&](const auto& earlier) {
                    const NSMenuItemRef other = shortcuts_->findMenuItem(*earlier);
                    return other && isWritten(*earlier) &&
                           (other == item ||
                            (keyForTrigger(earlier->trigger()) == key &&
                             modifierFlagsForTrigger(earlier->trigger()) == modifiers));
                });
            require(yields || (item->keyEquivalent() == key &&
                               item->keyEquivalentModifierMask() == modifiers));
        }
    }

    Choices& choices_;
    HeadlessProcess& process_;
    std::shared_ptr<VelmoraShortcuts> shortcuts_ = std::make_shared<VelmoraShortcuts>();
    int ran_ = 0;
};

}  // namespace

/// The input chooses definitions and menus, and then what a host and a user do with them. Activated
/// again in the end, what a definition names has its combination.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 600) return 0;
    HeadlessSession session("");
    session.transcript().setOn(false);
    HeadlessProcess& process = session.addProcess(HostDescription{.processName = "Editor"});
    const HeadlessProcess::Scope scope(process);
    Choices choices(data, size);
    Play(choices, process).run();
    return 0;
}
