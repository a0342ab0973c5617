#include "platform/foundation/files/PosixUser.h"

#include <sys/auxv.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velmora {

bool isOwnUsersProcess(const std::string& home) {
    if (::getuid() != ::geteuid() || ::getgid() != ::getegid()) return false;
    // Rights of other kinds, such as those that a file's capabilities give.
    if (::getauxval(AT_SECURE) != 0) return false;
    struct stat status {};
    return ::stat(home.c_str(), &status) != 0 || status.st_uid == ::geteuid();
}

}  // namespace velmora
