// Looking up a menu item whose path is the last of 2,000 leaves (at most 60 µs and no allocation a
// leaf), and merging as many shared definitions as there are own ones (linear; at most 20 ms for
// 5,000).

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "Allocations.h"
#include "definitions/VelmoraCommon.h"
#include "platform/foundation/SettingsFiles.h"
#include "support/HeadlessHost.h"

namespace {

using namespace velmora;

class Component final : public VelmoraCommon {
public:
    std::string componentName() override { return "Things"; }
};

std::shared_ptr<Component> makeComponent() {
    auto component = std::make_shared<Component>();
    component->init();
    return component;
}

/// 20 menus of items in submenus of 20; with equal titles the cheap test of a title never helps.
std::vector<ItemDescription> menusOfLeaves(int leaves, bool equalTitles) {
    std::vector<ItemDescription> bar;
    for (int i = 0; i < leaves; ++i) {
        if (i % 100 == 0) bar.push_back(submenu("Menu " + std::to_string(i / 100), {}));
        auto& menu = bar.back().items;
        if (i % 20 == 0) menu.push_back(submenu("Submenu " + std::to_string(i / 20), {}));
        menu.back().items.push_back(
            item(equalTitles ? "Item" : "Some menu item " + std::to_string(i), "perform:"));
    }
    return bar;
}

void lookUpLast(benchmark::State& state, bool equalTitles) {
    const auto leaves = static_cast<int>(state.range(0));
    HeadlessHost host("Editor");
    host.menu(menusOfLeaves(leaves, equalTitles));
    const auto component = makeComponent();
    const VelmoraSettingRef definition = VelmoraSetting::newSetting();
    const std::string submenuOfLast = "Menu " + std::to_string((leaves - 1) / 100) + "/Submenu " +
                                      std::to_string((leaves - 1) / 20);
    definition->setPath(submenuOfLast +
                        (equalTitles ? "/Gone" : "/Some menu item " + std::to_string(leaves - 1)));
    definition->setSelector("other:");
    component->findMenuItem(*definition);
    const std::size_t allocations = allocationCount();
    for (auto _ : state) benchmark::DoNotOptimize(component->findMenuItem(*definition));
    state.counters["allocations_a_leaf"] = static_cast<double>(allocationCount() - allocations) /
                                           static_cast<double>(state.iterations() * leaves);
    state.SetItemsProcessed(state.iterations() * leaves);
}
BENCHMARK_CAPTURE(lookUpLast, by_title, false)->Arg(500)->Arg(1000)->Arg(2000);
BENCHMARK_CAPTURE(lookUpLast, equal_titles, true)->Arg(2000);

NSArray records(int count, int from) {
    NSArray list;
    for (int i = from; i < from + count; ++i) {
        NSDictionary record;
        record.append("Path", "File/Item " + std::to_string(i));
        record.append("Trigger", "udlr" + std::to_string(i));
        record.append("Selector", "perform:");
        record.append("isGlobal", true);
        list.emplace_back(std::move(record));
    }
    return list;
}

/// Half of the shared records are the own ones, the others are new; half of the own ones go.
void merge(benchmark::State& state) {
    const auto count = static_cast<int>(state.range(0));
    HeadlessHost host("Editor");
    const auto component = makeComponent();
    std::int64_t date = 1;
    for (auto _ : state) {
        state.PauseTiming();
        SettingsFiles::ofProcess().write(host.files(), records(count, 0),
                                         component->appSpecificSettingsFileName());
        SettingsFiles::ofProcess().write(host.files(), records(count, count / 2),
                                         component->globalSettingsFileName());
        host.files().memory().setModificationDate(component->globalSettingsFileName(),
                                                  NSDate{++date});
        component->settings()->initWithContentsOfFile_forceGlobal(
            component->appSpecificSettingsFileName(), false);
        VelmoraSettings reading;
        const auto start = std::chrono::steady_clock::now();
        reading.initWithContentsOfFile_forceGlobal(component->globalSettingsFileName(), true);
        const auto read = std::chrono::steady_clock::now();
        component->mixinGlobals();
        const auto merged = std::chrono::steady_clock::now();
        // Merging reads the file first; what is left is the merging itself.
        const std::chrono::duration<double> time = (merged - read) - (read - start);
        state.SetIterationTime(std::max(time.count(), 1e-9));
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(merge)->Arg(1250)->Arg(2500)->Arg(5000)->UseManualTime()->Iterations(40);

}  // namespace
