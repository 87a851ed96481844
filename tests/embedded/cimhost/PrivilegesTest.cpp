// As whom the process runs.
#include "cimhost/Process.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace embedded::cimhost {
namespace {

TEST(Privileges, AreThoseOfAUserAndAGroupThatThereAre) {
    EXPECT_EQ(identityOf("root").user, 0U);
    EXPECT_EQ(identityOf("root").group, 0U);
    const Identity other = identityOf("nobody:root");
    EXPECT_NE(other.user, 0U);
    EXPECT_EQ(other.group, 0U);
    for (const char* const wrong :
         {"", ":", "root:", ":root", "no such user", "root:no such group"})
        EXPECT_THROW(identityOf(wrong), std::invalid_argument) << wrong;
}

TEST(Privileges, AreGivenUpForGood) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root has some";
    const pid_t child = ::fork();
    if (child == 0) {
        const Identity nobody = identityOf("nobody");
        become(nobody);
        const bool done = ::getuid() == nobody.user && ::geteuid() == nobody.user &&
                          ::getegid() == nobody.group && ::setuid(0) != 0 &&
                          ::access("/etc/shadow", R_OK) != 0;
        become(nobody); // once more is no fault
        ::_exit(done ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
}

TEST(Privileges, AreNotTakenByWhoHasNone) {
    const pid_t child = ::fork();
    if (child == 0) {
        if (::geteuid() == 0)
            become(identityOf("nobody"));
        try {
            become(identityOf("root"));
        } catch (const std::system_error&) {
            ::_exit(0);
        }
        ::_exit(1);
    }
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
}

TEST(CoreDumps, AreForbidden) {
    const pid_t child = ::fork();
    if (child == 0) {
        forbidCoreDumps();
        rlimit limit{1, 1};
        ::getrlimit(RLIMIT_CORE, &limit);
        ::_exit(limit.rlim_cur == 0 && limit.rlim_max == 0 ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
}

} // namespace
} // namespace embedded::cimhost
