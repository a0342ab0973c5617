#include "platform/appkit/panels/NSNibLoading.h"

#include <optional>
#include <utility>

#include "platform/appkit/panels/InterfaceFile.h"
#include "platform/foundation/NSBundle.h"
#include "platform/foundation/files/PropertyListFile.h"
#include "platform/runtime/NSLog.h"

namespace velmora {

bool loadNibNamed_owner(const NSBundle& bundle, const std::string& name, const Id& owner) {
    const std::string file = "interface/" + name + ".plist";
    const auto report = [&file](const std::string& what) {
        NSLog("Interface file '" + file + "': " + what);
        return false;
    };
    const std::optional<std::string> path = bundle.pathForResource_ofType(file, "");
    if (!path) return report("it is missing");
    std::optional<NSDictionary> contents =
        dictionaryWithContentsOfFile(NSBundle::resourceFiles(), *path);
    if (!contents) return report("it cannot be read");
    InterfaceFile interface(std::move(*contents), [&bundle](const std::string& english) {
        return bundle.localizedStringForKey_value_table(english);
    });
    InterfaceFile::Error error;
    if (!interface.load(owner, error)) return report(error.place + ": " + error.reason);
    return true;
}

}  // namespace velmora
