// Shortcuts: 500 installed into 2,000 items (at most 40 ms) and 50 into 500 (at most 1 ms); a burst
// of 500 changes of the menus while nothing is pending (at most 5 ms) and while one definition
// waits for its item; a handled key-down from the router to the command with 500 definitions (at
// most 100 µs).

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "Allocations.h"
#include "commands/VelmoraShortcuts.h"
#include "platform/appkit/NSApplication.h"
#include "platform/foundation/NSNotificationCenter.h"
#include "support/HeadlessHost.h"

namespace {

using namespace velmora;

constexpr int items = 2000;
constexpr int definitions = 500;

/// The path of each fourth item, in the menus that menusOf makes.
std::string pathOf(int i) {
    return "Menu " + std::to_string(i / 100) + "/Submenu " + std::to_string(i / 20) + "/Item " +
           std::to_string(i);
}

/// Menus of five submenus of 20 items, each with an action of its own.
std::vector<ItemDescription> menusOf(int count) {
    std::vector<ItemDescription> bar;
    for (int i = 0; i < count; ++i) {
        if (i % 100 == 0) bar.push_back(submenu("Menu " + std::to_string(i / 100), {}));
        auto& menu = bar.back().items;
        if (i % 20 == 0) menu.push_back(submenu("Submenu " + std::to_string(i / 20), {}));
        menu.back().items.push_back(
            item("Item " + std::to_string(i), "perform" + std::to_string(i) + ":"));
    }
    return bar;
}

/// For each fourth item a combination of its own.
std::string shortcutsOf(int count) {
    std::string file = "(";
    for (int i = 0; i < count; ++i) {
        file += "{ Path = \"" + pathOf(4 * i) + "\"; Selector = \"perform" + std::to_string(4 * i) +
                ":\"; Trigger = \"8x" + std::to_string(i) + "\"; }, ";
    }
    return file + ")";
}

/// A component that has read its definitions and does not hear of the menus yet.
std::shared_ptr<VelmoraShortcuts> makeShortcuts(HeadlessHost& host, int count) {
    host.writeSettings("EditorShortcuts.plist", shortcutsOf(count));
    auto shortcuts = std::make_shared<VelmoraShortcuts>();
    shortcuts->init();
    NSNotificationCenter::defaultCenter().removeObserver(*shortcuts);
    return shortcuts;
}

void observe(const std::shared_ptr<VelmoraShortcuts>& shortcuts) {
    for (const auto name : {NSMenuDidAddItemNotification, NSMenuDidChangeItemNotification}) {
        NSNotificationCenter::defaultCenter().addObserver_selector_name_object(
            shortcuts, Selector::named("menuChangedNotification:"), name, nullptr);
    }
}

/// The items have none, or each the combination of another one.
void install(benchmark::State& state, bool taken) {
    const auto count = static_cast<int>(state.range(0));
    HeadlessHost host("Editor");
    for (auto _ : state) {
        state.PauseTiming();
        host.desktop().setMenuBar(std::nullopt);
        const auto shortcuts = makeShortcuts(host, count);
        host.menu(menusOf(static_cast<int>(state.range(1))));
        for (int i = 0; taken && i < count; ++i) {
            host.itemAt(pathOf(4 * i))
                ->setKeyEquivalent_modifierMask("x" + std::to_string(count - 1 - i),
                                                NSCommandKeyMask);
        }
        observe(shortcuts);
        state.ResumeTiming();
        shortcuts->activateSettings();
    }
}
BENCHMARK_CAPTURE(install, free, false)
    ->Args({50, 500})
    ->Args({500, 2000})
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(install, taken, true)
    ->Args({50, 500})
    ->Args({500, 2000})
    ->Unit(benchmark::kMillisecond);

/// 500 items change: others than the definitions', or those.
void burst(benchmark::State& state, bool named, int pending) {
    HeadlessHost host("Editor");
    host.menu(menusOf(items));
    const auto shortcuts = makeShortcuts(host, definitions);
    for (int i = 0; i < pending; ++i) {
        const VelmoraSettingRef definition = VelmoraSetting::newSetting();
        definition->setPath("File/Not there");
        definition->setTrigger("8n");
        shortcuts->settings()->array().push_back(definition);
    }
    observe(shortcuts);
    shortcuts->activateSettings();
    std::vector<NSNotification> notifications;
    for (int i = 0; i < definitions; ++i) {
        const NSMenuItemRef changed = host.itemAt(pathOf(4 * i + (named ? 0 : 1)));
        notifications.push_back({NSMenuDidChangeItemNotification, changed->menu(),
                                 changed->menu()->indexOfItem(*changed)});
    }
    for (auto _ : state) {
        for (const NSNotification& notification : notifications) {
            NSNotificationCenter::defaultCenter().postNotification(notification);
        }
    }
}
BENCHMARK_CAPTURE(burst, of_others, false, 0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(burst, of_named, true, 0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(burst, one_pending, false, 1)->Unit(benchmark::kMillisecond);

void handledKeyDown(benchmark::State& state) {
    HeadlessHost host("Editor");
    host.session().transcript().setOn(false);
    host.menu(menusOf(items));
    host.writeSettings("EditorShortcuts.plist", shortcutsOf(definitions));
    host.launch();
    NSEvent::Fields fields;
    fields.type = NSKeyDown;
    fields.modifierFlags = NSCommandKeyMask;
    fields.charactersIgnoringModifiers = "x" + std::to_string(definitions - 1);
    const auto event = std::make_shared<NSEvent>(fields);
    int ran = 0;
    host.desktop().setOnCommand([&](NSMenuItem&) { ++ran; });
    const std::size_t allocations = allocationCount();
    for (auto _ : state) NSApp().sendEvent(event);
    const auto events = static_cast<double>(state.iterations());
    state.counters["allocations"] = static_cast<double>(allocationCount() - allocations) / events;
    state.counters["ran"] = ran / events;
}
BENCHMARK(handledKeyDown)->Unit(benchmark::kMicrosecond);

}  // namespace
