#include "definitions/VelmoraSettingsDirectory.h"

#include "platform/port/Desktop.h"

namespace velmora {

std::string settingsDirectory() {
    FileSystem& files = desktop().files();
    const std::string library = desktop().homeDirectory() + "/Library";
    const std::string support = library + "/Application Support";
    std::string directory = support + "/Velmora";
    if (files.fileExistsAtPath(directory)) return directory;
    // A home of this desktop need not have a Library of its own accord.
    for (const std::string& path : {library, support, directory}) {
        if (!files.fileExistsAtPath(path)) files.createDirectoryAtPath(path);
    }
    return directory;
}

}  // namespace velmora
