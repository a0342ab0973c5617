// What a motion event costs on its way through tracking to a scroll view that has scrolled: at most
// 5 us, and no allocations but two events: the kept copy of the fetched one and the one that
// scrolls. And an icon in another hue, before it is decoded: at most 10 us.

#include <benchmark/benchmark.h>

#include "Allocations.h"
#include "gestures/VelmoraMouseHandling.h"
#include "images/VelmoraImageFactory.h"
#include "platform/appkit/NSApplication.h"
#include "support/HeadlessHost.h"

namespace {

using namespace velmora;

HostDescription editor() {
    ViewDescription text{.frame = {{0, 0}, {600, 600}}};
    text.scroll = ScrollDescription{.name = "text", .document = {600, 9000}, .origin = {0, 4000}};
    return {.processName = "Editor",
            .menuBar = std::vector{submenu("Editor", {item("About")})},
            .windows = {{.title = "Text", .frame = {{0, 0}, {600, 600}}, .views = {text}}}};
}

/// Each event is three pixels of motion, down and up again, and gives one step. What the user's
/// hand allocates is left out.
void track(benchmark::State& state) {
    constexpr int eventsAtATime = 1000;
    HeadlessHost host(editor());
    host.writeSettings("VelmoraDefaults.plist", "{ isEnabled2=1; mouseButton2=2; }");
    host.launch();
    host.session().transcript().setOn(false);
    HeadlessUser& user = host.session().user();
    user.move({300, 300}, Time::zero());
    std::size_t allocations = 0;
    std::size_t handAllocations = 0;
    std::chrono::duration<double> time{};
    double events = 0;
    for (auto _ : state) {
        host.press(2);
        for (int i = 0; i < eventsAtATime; ++i) {
            host.then([&user, &handAllocations, by = i % 2 == 0 ? -3.0F : 3.0F] {
                const std::size_t before = allocationCount();
                const NSPoint hand = user.hand();
                user.move({hand.x, hand.y + by}, Time::zero());
                handAllocations += allocationCount() - before;
            });
        }
        host.release(2);
        const std::size_t before = allocationCount();
        const auto start = std::chrono::steady_clock::now();
        host.run();
        const auto spent = std::chrono::steady_clock::now() - start;
        allocations += allocationCount() - before;
        time += spent;
        events += eventsAtATime;
        state.SetIterationTime(std::chrono::duration<double>(spent).count());
    }
    state.counters["us_each"] = time.count() * 1e6 / events;
    state.counters["allocations_each"] =
        static_cast<double>(allocations - handAllocations) / events;
}

void recolour(benchmark::State& state) {
    const HeadlessHost host("Editor");
    const auto& icon = VelmoraImageFactory::iconData();
    if (!icon) return state.SkipWithError("no icon");
    double hue = 0;
    for (auto _ : state) {
        hue = hue < 59 ? hue + 1 : 0;
        benchmark::DoNotOptimize(VelmoraImageFactory::pngData_withHue(*icon, hue));
    }
}

const auto* tracking = benchmark::RegisterBenchmark("scroll/tracking", track) -> UseManualTime();
const auto* recolouring = benchmark::RegisterBenchmark("images/recolour", recolour);

}  // namespace
