// velmora-replay: plays scenarios and prints what happened.

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <iterator>
#include <optional>
#include <sstream>
#include <utility>

#include "platform/headless/PngCodec.h"
#include "replay/ScenarioParser.h"
#include "replay/ScenarioPlayer.h"
#include "replay/ScreenPicture.h"

namespace {

namespace fs = std::filesystem;
using namespace velmora;

enum ExitStatus { everythingHeld = 0, somethingFailed = 1, nothingToPlay = 2 };

/// In share/velmora beside the program or beside a folder that holds it, as it is built and
/// installed.
std::string resourceDirectory() {
    if (const char* given = std::getenv("VELMORA_RESOURCES")) return given;
    std::error_code error;
    fs::path folder = fs::read_symlink("/proc/self/exe", error).parent_path();
    while (!error && folder != folder.root_path()) {
        const fs::path resources = folder / "share" / "velmora";
        if (fs::exists(resources / "interface", error)) return resources;
        folder = folder.parent_path();
    }
    std::cerr << "velmora-replay: no resources found; VELMORA_RESOURCES can name their folder\n";
    return {};
}

struct Options {
    bool quiet = false;
    /// Where pictures of the screen go; "" for nowhere.
    std::string pictures;
    std::vector<std::string> files;
};

/// Writes a picture of the screen each time that it shows something new of ours. Its name tells the
/// line of the scenario that came next, and the time.
class PictureWriter {
public:
    PictureWriter(const std::string& folder, const std::string& scenario)
        : prefix_(fs::path(folder) / fs::path(scenario).stem()) {}

    bool failed() const { return failed_; }

    void write(HeadlessDesktop& desktop, int line) {
        const auto picture = screen_.takeIfNew(desktop);
        if (!picture) return;
        const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(desktop.now());
        std::ostringstream name;
        name << prefix_.string() << "-line" << std::setfill('0') << std::setw(4) << line << '-'
             << std::setw(6) << ms.count() << "ms.png";
        std::ofstream stream(name.str(), std::ios::binary);
        stream << encodePng(*picture) << std::flush;
        desktop.record(Transcript::Kind::note, "picture " + name.str());
        if (stream || std::exchange(failed_, true)) return;
        std::cerr << name.str() << ": cannot be written\n";
    }

private:
    fs::path prefix_;
    ScreenPicture screen_;
    bool failed_ = false;
};

ExitStatus play(const std::string& file, const std::string& resources, const Options& options) {
    std::ifstream stream(file, std::ios::binary);
    const std::string source{std::istreambuf_iterator<char>(stream), {}};
    if (!stream) {
        std::cerr << file << ": cannot be read\n";
        return nothingToPlay;
    }
    const auto parsed = parseScenario(source);
    if (const auto* error = std::get_if<ScenarioError>(&parsed)) {
        std::cerr << file << ':' << error->line << ": " << error->reason << '\n';
        return nothingToPlay;
    }
    ScenarioPlayer player(resources);
    PictureWriter pictures(options.pictures, file);
    if (!options.pictures.empty()) {
        player.setWatcher(
            [&](HeadlessDesktop& desktop, int line) { pictures.write(desktop, line); });
    }
    const auto& faults = player.play(std::get<Scenario>(parsed));
    if (!options.quiet) {
        std::cout << file << '\n';
        player.transcript().print(std::cout);
    }
    for (const ScenarioPlayer::Fault& fault : faults) {
        std::cerr << file << ':' << fault.line << ": " << fault.text << '\n';
    }
    return faults.empty() && !pictures.failed() ? everythingHeld : somethingFailed;
}

/// Nothing when they cannot be understood.
std::optional<Options> optionsFrom(int argc, char** argv) {
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (argument == "--quiet") {
            options.quiet = true;
        } else if (argument == "--png" && i + 1 < argc) {
            options.pictures = argv[++i];
        } else if (argument.starts_with("--")) {
            return std::nullopt;
        } else {
            options.files.push_back(argument);
        }
    }
    if (options.files.empty()) return std::nullopt;
    return options;
}

}  // namespace

int main(int argc, char** argv) {
    const std::optional<Options> options = optionsFrom(argc, argv);
    if (!options) {
        std::cerr << "usage: velmora-replay [--quiet] [--png FOLDER] FILE...\n"
                     "Plays each scenario and prints what happened. Ends with 0 when everything\n"
                     "held, 1 when an expectation failed, 2 when a file was no scenario. With\n"
                     "--png it leaves a picture of the screen each time that it has changed.\n";
        return nothingToPlay;
    }
    if (!options->pictures.empty()) {
        std::error_code error;
        fs::create_directories(options->pictures, error);
    }
    const std::string resources = resourceDirectory();
    int status = everythingHeld;
    for (const std::string& file : options->files) {
        status = std::max<int>(status, play(file, resources, *options));
    }
    return status;
}
