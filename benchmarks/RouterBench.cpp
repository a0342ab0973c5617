// What an event that is nobody's costs on its way through the router, over the host's own dispatch:
// no allocation, at most 25 ns. benchmarks/instructions.py counts the instructions of the same.

#include <benchmark/benchmark.h>

#include <cstdlib>

#include "Allocations.h"
#include "platform/appkit/NSApplication.h"
#include "support/HeadlessHost.h"

namespace {

using namespace velmora;

/// Ten entries, none of which is for the event.
constexpr const char* allSlots =
    "{ isEnabled0=1; mouseButton0=3; isEnabled1=1; mouseButton1=4; isEnabled2=1; mouseButton2=5;"
    "  isEnabled3=1; mouseButton3=6; isEnabled4=1; mouseButton4=7; isEnabled5=1; mouseButton5=8;"
    "  isEnabled6=1; mouseButton6=9; isEnabled7=1; mouseButton7=10; isEnabled8=1; mouseButton8=11;"
    "  isEnabled9=1; mouseButton9=12; }";

double bareTime = 0;

NSEventRef eventOfType(std::uint32_t type) {
    NSEvent::Fields fields;
    fields.type = type;
    fields.buttonNumber = 1;
    fields.modifierFlags = NSShiftKeyMask;
    return std::make_shared<NSEvent>(fields);
}

void dispatch(benchmark::State& state, bool routed, std::uint32_t type) {
    HeadlessHost host("Editor");
    host.session().transcript().setOn(false);
    if (routed) {
        host.writeSettings("VelmoraDefaults.plist", allSlots);
        host.menu({submenu("Editor", {item("About")})});
        host.launch();
    }
    NSApplication& application = NSApp();
    const NSEventRef event = eventOfType(type);
    application.sendEvent(event);
    const std::size_t allocations = allocationCount();
    const auto start = std::chrono::steady_clock::now();
    for (auto _ : state) application.sendEvent(event);
    const std::chrono::duration<double, std::nano> time = std::chrono::steady_clock::now() - start;
    const auto events = static_cast<double>(state.iterations());
    state.counters["allocations"] = static_cast<double>(allocationCount() - allocations) / events;
    if (!routed) bareTime = time.count() / events;
    if (routed && bareTime > 0) {
        state.counters["ns_over_bare"] = time.count() / events - bareTime;
        state.counters["ratio"] = time.count() / events / bareTime;
    }
}

/// A fixed number of events when instructions are counted.
benchmark::internal::Benchmark* counted(benchmark::internal::Benchmark* bench) {
    const char* events = std::getenv("VELMORA_BENCH_EVENTS");
    return events ? bench->Iterations(std::atol(events)) : bench;
}

const auto* bare = counted(benchmark::RegisterBenchmark(
    "router/bare", [](benchmark::State& state) { dispatch(state, false, NSRightMouseDown); }));
const auto* press = counted(benchmark::RegisterBenchmark(
    "router/press", [](benchmark::State& state) { dispatch(state, true, NSRightMouseDown); }));
const auto* motion = counted(benchmark::RegisterBenchmark(
    "router/motion", [](benchmark::State& state) { dispatch(state, true, NSMouseMoved); }));
const auto* key = counted(benchmark::RegisterBenchmark(
    "router/key", [](benchmark::State& state) { dispatch(state, true, NSKeyDown); }));

}  // namespace
