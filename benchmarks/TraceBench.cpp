// What a sample of a stroke costs in its trace, up to the list that the desktop plays: the 1,000th
// at most twice the first.

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

#include "gestures/VelmoraGestureCell.h"
#include "gestures/VelmoraGestureFeedbackWindow.h"
#include "platform/appkit/drawing/NSGraphicsContext.h"
#include "support/HeadlessHost.h"

namespace {

using namespace velmora;

/// Seconds for so many samples, each of a point of its own.
double timeOfSamples(VelmoraGestureFeedbackWindow& window, int from, int count) {
    const auto start = std::chrono::steady_clock::now();
    for (int i = from; i < from + count; ++i) {
        window.addPoint({static_cast<float>(i), static_cast<float>(i % 100)});
    }
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void trace(benchmark::State& state) {
    constexpr int group = 20;
    constexpr int before = 1000;
    HeadlessHost host("Editor");
    host.launch();
    const auto window = std::make_shared<VelmoraGestureFeedbackWindow>();
    double first = 0;
    double last = 0;
    for (auto _ : state) {
        window->startAtPoint({0, 0});
        first += timeOfSamples(*window, 1, group);
        timeOfSamples(*window, 1 + group, before - group);
        last += timeOfSamples(*window, 1 + before, group);
    }
    state.counters["ns_each"] = last * 1e9 / (static_cast<double>(state.iterations()) * group);
    state.counters["ratio_1000th_to_first"] = last / first;
}

/// A gesture of so many letters in a cell of the gestures panel.
void drawGesture(benchmark::State& state) {
    constexpr std::string_view spiral = "rdrulllddu";
    std::string letters;
    while (static_cast<std::int64_t>(letters.size()) < state.range(0)) letters += spiral;
    VelmoraGestureCell cell;
    cell.initBig(false);
    for (auto _ : state) {
        cell.setStringValue(letters);
        NSGraphicsContext::record([&] {
            cell.drawInteriorWithFrame_inView({{0, 0}, {32, 32}}, nullptr);
        });
    }
}

BENCHMARK(drawGesture)->Name("gesture/drawn")->Arg(40)->Arg(4000)->Arg(40000);

const auto* tracing = benchmark::RegisterBenchmark("trace/sample", trace);

}  // namespace
