// The icon in another hue: at most 10 µs until it is decoded. The second figure is a whole frame of
// the animated icon with the headless desktop's decoder.

#include <benchmark/benchmark.h>

#include <memory>

#include "images/VelmoraAnimatedIcon.h"
#include "images/VelmoraImageFactory.h"
#include "support/HeadlessHost.h"

namespace {

using namespace velmora;

constexpr double turn = 60;

void recolor(benchmark::State& state) {
    const HeadlessHost host("Editor");
    const std::optional<std::string>& data = VelmoraImageFactory::iconData();
    if (!data) {
        state.SkipWithError("the icon is missing");
        return;
    }
    double hue = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(VelmoraImageFactory::pngData_withHue(*data, hue));
        hue = hue + 1 < turn ? hue + 1 : 0;
    }
}

void frame(benchmark::State& state) {
    const HeadlessHost host("Editor");
    const auto icon = std::make_shared<VelmoraAnimatedIcon>();
    icon->awakeFromNib();
    for (auto _ : state) icon->animationTick(nullptr);
}

BENCHMARK(recolor)->Name("icon/recolour")->Unit(benchmark::kMicrosecond);
BENCHMARK(frame)->Name("icon/frame")->Unit(benchmark::kMicrosecond);

}  // namespace
