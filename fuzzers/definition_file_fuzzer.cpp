#include <cstdint>
#include <cstdlib>
#include <string>

#include "definitions/VelmoraSettings.h"
#include "platform/foundation/files/FileHistory.h"
#include "platform/headless/HeadlessSession.h"

/// Any bytes as a definition file: what was read is written and read again as the same records, and
/// what stood there before is kept.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace velmora;
    HeadlessSession session("");
    HeadlessProcess& process = session.addProcess(HostDescription{.processName = "Editor"});
    const HeadlessProcess::Scope scope(process);
    const std::string file = session.homeDirectory() + "/Definitions.plist";
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    session.files().writeAtomically(file, bytes);

    VelmoraSettings list;
    list.initWithContentsOfFile_forceGlobal(file, false);
    list.createBackup();
    list.saveSettingsWithGlobalFlag_toFile(false, file);
    if (session.files().contentsOfFile(file) != bytes) {
        const FileHistory history(session.files(), file);
        const std::vector<std::string> versions = history.versions();
        if (versions.size() != 1 ||
            session.files().contentsOfFile(history.pathOf(versions[0])) != bytes) {
            std::abort();
        }
    }
    VelmoraSettings again;
    again.initWithContentsOfFile_forceGlobal(file, false);
    if (again.count() != list.count()) std::abort();
    for (int i = 0; i < list.count(); ++i) {
        const VelmoraSettingRef before = list.objectAtIndex(i);
        const VelmoraSettingRef after = again.objectAtIndex(i);
        if (!before->isEqualTo(*after) || before->isGlobal() != after->isGlobal()) std::abort();
    }
    return 0;
}
