#include "platform/foundation/PropertyListURL.h"

#include "platform/Desktop.h"
#include "platform/foundation/NSTask.h"
#include "platform/foundation/PropertyListFile.h"

namespace velmora {

namespace {

constexpr const char* fetcher = "/usr/bin/curl";
constexpr const char* secondsAtMost = "10";
constexpr const char* bytesAtMost = "65536";

bool fetch(const std::string& address, const std::string& file) {
    // No settings of the user's ("-q" must come first), no other protocols after a redirection.
    const auto task = NSTask::launchedTaskWithLaunchPath_arguments(
        fetcher,
        {"-q", "--silent", "--fail", "--location", "--max-time", secondsAtMost, "--max-filesize",
         bytesAtMost, "--proto", "=http,https", "--output", file, "--", address});
    if (!task) return false;
    task->waitUntilExit();
    return !task->isRunning() && task->terminationStatus() == 0;
}

}  // namespace

std::optional<NSDictionary> dictionaryWithContentsOfURL(const std::string& address,
                                                        const std::string& scratchFile) {
    FileSystem& files = desktop().files();
    files.remove(scratchFile);
    std::optional<NSDictionary> dictionary;
    if (fetch(address, scratchFile)) dictionary = dictionaryWithContentsOfFile(files, scratchFile);
    files.remove(scratchFile);
    return dictionary;
}

}  // namespace velmora
