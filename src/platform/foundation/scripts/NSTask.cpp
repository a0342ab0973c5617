#include "platform/foundation/scripts/NSTask.h"

#include "platform/port/Desktop.h"

namespace velmora {

std::unique_ptr<NSTask> NSTask::launchedTaskWithLaunchPath_arguments(
    const std::string& path, const std::vector<std::string>& arguments) {
    return desktop().launchProcess(path, arguments);
}

}  // namespace velmora
