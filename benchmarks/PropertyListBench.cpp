// What reading a definition file costs over the property-list library alone: at most 1.5 times.

#include <benchmark/benchmark.h>
#include <plist/plist.h>

#include <cstdint>
#include <ctime>
#include <string>

#include "platform/foundation/SettingsFiles.h"
#include "platform/headless/MemoryFileSystem.h"

namespace {

using namespace velmora;

constexpr int definitionCount = 10'000;

const std::string path = "/Definitions.plist";

NSArray definitions() {
    NSArray list;
    list.reserve(definitionCount);
    for (int i = 0; i < definitionCount; ++i) {
        const std::string number = std::to_string(i);
        NSDictionary definition;
        definition.append("Path", "Format/Font/Submenu " + number + "/Menu Item & More " + number);
        definition.append("Trigger", i % 2 == 0 ? "ldru" : "8" + number);
        definition.append("Selector", "performCommand" + number + ":");
        definition.append("isGlobal", i % 3 == 0);
        list.emplace_back(std::move(definition));
    }
    return list;
}

MemoryFileSystem& filesWithDefinitions() {
    static MemoryFileSystem files = [] {
        MemoryFileSystem made;
        SettingsFiles::ofProcess().write(made, definitions(), path);
        return made;
    }();
    return files;
}

double libraryTime = 0;

/// Processor time a call, so that what else runs on the machine does not count.
template <class Read>
double measure(benchmark::State& state, Read read) {
    const std::clock_t start = std::clock();
    while (state.KeepRunning()) read();
    return static_cast<double>(std::clock() - start) / static_cast<double>(state.iterations());
}

void readByTheLibraryAlone(benchmark::State& state) {
    const std::string xml = *filesWithDefinitions().contentsOfFile(path, std::string::npos);
    libraryTime = measure(state, [&xml] {
        plist_t list = nullptr;
        plist_from_memory(xml.data(), static_cast<std::uint32_t>(xml.size()), &list);
        benchmark::DoNotOptimize(list);
        plist_free(list);
    });
}

void readDefinitions(benchmark::State& state) {
    MemoryFileSystem& files = filesWithDefinitions();
    const double time = measure(state, [&files] {
        benchmark::DoNotOptimize(SettingsFiles::ofProcess().read(files, path));
    });
    if (libraryTime > 0) state.counters["times_library"] = time / libraryTime;
}

void writeDefinitions(benchmark::State& state) {
    MemoryFileSystem& files = filesWithDefinitions();
    const NSArray list = definitions();
    while (state.KeepRunning()) SettingsFiles::ofProcess().write(files, list, path);
}

// Both in one run, since the second is measured against the first.
BENCHMARK(readByTheLibraryAlone)->Unit(benchmark::kMillisecond);
BENCHMARK(readDefinitions)->Unit(benchmark::kMillisecond);
BENCHMARK(writeDefinitions)->Unit(benchmark::kMillisecond);

}  // namespace
