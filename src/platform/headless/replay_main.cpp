// velmora-replay: plays scenarios and prints what happened.

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>

#include "platform/headless/ScenarioParser.h"
#include "platform/headless/ScenarioPlayer.h"

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

ExitStatus play(const std::string& file, const std::string& resources, bool quiet) {
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
    const auto& faults = player.play(std::get<Scenario>(parsed));
    if (!quiet) {
        std::cout << file << '\n';
        player.transcript().print(std::cout);
    }
    for (const ScenarioPlayer::Fault& fault : faults) {
        std::cerr << file << ':' << fault.line << ": " << fault.text << '\n';
    }
    return faults.empty() ? everythingHeld : somethingFailed;
}

}  // namespace

int main(int argc, char** argv) {
    bool quiet = false;
    std::vector<std::string> files;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (argument == "--quiet") {
            quiet = true;
        } else {
            files.push_back(argument);
        }
    }
    if (files.empty() || files.front() == "--help") {
        std::cerr << "usage: velmora-replay [--quiet] FILE...\n"
                     "Plays each scenario and prints what happened. Ends with 0 when everything\n"
                     "held, 1 when an expectation failed, 2 when a file was no scenario.\n";
        return nothingToPlay;
    }
    const std::string resources = resourceDirectory();
    int status = everythingHeld;
    for (const std::string& file : files) {
        status = std::max<int>(status, play(file, resources, quiet));
    }
    return status;
}
