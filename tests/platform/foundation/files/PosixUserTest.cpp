#include "platform/foundation/files/PosixUser.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>

#include "support/TemporaryFolder.h"

namespace velmora {
namespace {

constexpr uid_t somebodyElse = 65534;

/// What a child process finds that has done that before; nobody but the superuser can.
bool isOwnAfter(const std::string& home, const std::function<bool()>& change) {
    const pid_t child = ::fork();
    if (child == 0) ::_exit(change() ? (isOwnUsersProcess(home) ? 1 : 0) : 2);
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 1;
}

TEST(PosixUserTest, AProcessActsForItsUserOnlyInTheUsersOwnHome) {
    const TemporaryFolder home;
    EXPECT_TRUE(isOwnUsersProcess(home.path()));
    EXPECT_TRUE(isOwnUsersProcess(home.path("none")));
    if (::geteuid() == 0) {
        ASSERT_EQ(::chown(home.path().c_str(), somebodyElse, somebodyElse), 0);
        EXPECT_FALSE(isOwnUsersProcess(home.path()));
    } else {
        EXPECT_FALSE(isOwnUsersProcess("/"));
    }
}

TEST(PosixUserTest, AProcessWithTheRightsOfAnotherUserOrGroupActsForNobody) {
    const TemporaryFolder home;
    EXPECT_TRUE(isOwnAfter(home.path(), [] { return true; }));
    EXPECT_FALSE(isOwnAfter(home.path(), [] { return ::setegid(somebodyElse) == 0; }));
    EXPECT_FALSE(isOwnAfter(home.path(), [] { return ::setresuid(somebodyElse, -1, -1) == 0; }));
}

}  // namespace
}  // namespace velmora
