// Panels: the copy of a menu bar of 2,000 items for the cells that choose a command (at most 20
// ms), beside walking those items; opening and closing a panel with 1,000 and 10,000 definitions,
// of which only what is shown is asked for, beside one without any.

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "commands/VelmoraMnemonics.h"
#include "panels/VelmoraMenuSelectorCell.h"
#include "platform/appkit/NSApplication.h"
#include "platform/appkit/panels/NSPanel.h"
#include "support/HeadlessHost.h"

namespace {

using namespace velmora;

constexpr int items = 2000;

std::vector<ItemDescription> menuBar() {
    std::vector<ItemDescription> bar;
    for (int i = 0; i < items; ++i) {
        if (i % 100 == 0) bar.push_back(submenu("Menu " + std::to_string(i / 100), {}));
        bar.back().items.push_back(item("Item " + std::to_string(i), "perform:"));
    }
    return bar;
}

void walk(const NSMenu& menu, int& count) {
    for (const NSMenuItemRef& item : menu.itemArray()) {
        ++count;
        if (item->hasSubmenu()) walk(*item->submenu(), count);
    }
}

void walkTheMenuBar(benchmark::State& state) {
    HeadlessHost host("Editor");
    host.menu(menuBar());
    const NSMenuRef bar = NSApp().mainMenu();
    for (auto _ : state) {
        int count = 0;
        walk(*bar, count);
        benchmark::DoNotOptimize(count);
    }
}
BENCHMARK(walkTheMenuBar)->Unit(benchmark::kMicrosecond);

void copyTheMenuBar(benchmark::State& state) {
    HeadlessHost host("Editor");
    host.menu(menuBar());
    const NSMenuRef bar = NSApp().mainMenu();
    for (auto _ : state) benchmark::DoNotOptimize(VelmoraMenuSelectorCell::cloneMenu(*bar));
}
BENCHMARK(copyTheMenuBar)->Unit(benchmark::kMicrosecond);

void openAndClose(benchmark::State& state) {
    HeadlessHost host("Editor");
    host.menu({submenu("Editor", {item("Quit")})});
    std::string file = "(";
    for (int i = 0; i < state.range(0); ++i) {
        file += "{ Path = \"Editor/Quit\"; Trigger = \"t" + std::to_string(i) + "\"; }, ";
    }
    host.writeSettings("EditorMnemonics.plist", file + ")");
    const auto mnemonics = std::make_shared<VelmoraMnemonics>();
    mnemonics->init();
    for (auto _ : state) {
        mnemonics->showPanel();
        host.desktop().frontPanel()->panel().close();
        host.advance(1);
    }
}
BENCHMARK(openAndClose)->Arg(0)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);

}  // namespace
