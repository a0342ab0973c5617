// A click on a modifier in the preferences panel, which writes the file ten times, in a directory
// on the disk (at most 2 ms, also with 1,000 versions of other files in the history), and the wait
// for the disk that follows it once.

#include <benchmark/benchmark.h>

#include <string>

#include "platform/foundation/NSRunLoop.h"
#include "platform/foundation/files/PosixFileSystem.h"
#include "preferences/VelmoraDefaults.h"
#include "support/ForwardingDesktop.h"
#include "support/HeadlessHost.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace velmora;

/// With its files on the disk.
class DiskDesktop final : public ForwardingDesktop {
public:
    using ForwardingDesktop::ForwardingDesktop;
    std::string homeDirectory() override { return folder_.path(); }
    FileSystem& files() override { return files_; }

private:
    TemporaryFolder folder_;
    PosixFileSystem files_;
};

/// The argument is how many versions of other files lie in the history.
void clickAModifier(benchmark::State& state, bool waits) {
    HeadlessHost host("Editor");
    DiskDesktop desktop(host.desktop());
    const auto defaults = std::make_shared<VelmoraDefaults>(VelmoraDefaults::Callbacks());
    const auto item = std::make_shared<NSMenuItem>("Velmora", Selector(), "");
    defaults->initForMenuItem(item);
    const std::string folder =
        defaults->globalDefaultsFileName().substr(0, defaults->globalDefaultsFileName().rfind('/'));
    desktop.files().createDirectoryAtPath(folder + "/History");
    for (int i = 0; i < state.range(0); ++i) {
        desktop.files().writeAtomically(
            folder + "/History/other" + std::to_string(i) + ".plist.2026-01-01T00-00-00.000Z", "");
    }
    std::uint32_t mask = 0;
    const auto click = [&] {
        mask ^= 8U;
        for (int slot = 0; slot < VelmoraSlotCount; ++slot) {
            defaults->setModifier_forIndex(slot == 0 ? mask : 0, slot);
        }
    };
    const auto pass = [&] {
        NSRunLoop::currentRunLoop().fireDueTimers(NSDefaultRunLoopMode, desktop.now());
    };
    click();
    pass();
    for (auto _ : state) {
        if (waits) {
            state.PauseTiming();
            click();
            state.ResumeTiming();
            pass();
        } else {
            click();
            state.PauseTiming();
            pass();
            state.ResumeTiming();
        }
    }
}
// Few, since some file systems are slow to make files where many were removed just now.
BENCHMARK_CAPTURE(clickAModifier, writing, false)
    ->Arg(0)
    ->Arg(1000)
    ->Iterations(30)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(clickAModifier, waiting, true)
    ->Arg(0)
    ->Iterations(30)
    ->Unit(benchmark::kMicrosecond);

}  // namespace
