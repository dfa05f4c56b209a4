#include "Support/ChildProcess.h"

#include <cstdio>
#include <grp.h>
#include <gtest/gtest.h>
#include <stdexcept>

#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orbel::test {

namespace {

void require(int result, const char* what) {
    if (result != 0)
        throw std::runtime_error(what);
}

} // namespace

bool inChildProcess(const std::function<void()>& body) {
    std::fflush(nullptr);
    const pid_t child = ::fork();
    if (child == 0) {
        try {
            body();
        } catch (const std::exception& error) {
            ADD_FAILURE() << "in the child process: " << error.what();
        }
        std::fflush(nullptr);
        ::_exit(::testing::Test::HasFailure() ? 1 : 0);
    }
    int status = 0;
    const bool ended = child > 0 && ::waitpid(child, &status, 0) == child;
    const bool passed = ended && WIFEXITED(status) && WEXITSTATUS(status) == 0;
    EXPECT_TRUE(passed) << "the child process failed or died; wait status " << status;
    return passed;
}

bool isRoot() {
    return ::geteuid() == 0;
}

void becomeOtherUser() {
    constexpr uid_t nobody = 65534;
    require(::setgroups(0, nullptr), "setgroups");
    require(::setresgid(nobody, nobody, nobody), "setresgid");
    require(::setresuid(nobody, nobody, nobody), "setresuid");
}

void useOwnMountTable() {
    require(::unshare(CLONE_NEWNS), "unshare");
    require(::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr), "making mounts private");
}

void mountTmpfs(const char* folder) {
    require(::mount("tmpfs", folder, "tmpfs", 0, "size=1m"), "mounting a tmpfs");
}

void bindMount(const char* source, const char* target) {
    require(::mount(source, target, nullptr, MS_BIND, nullptr), "a bind mount");
}

void mountOverlay(const std::string& lower, const std::string& upper, const std::string& work,
                  const std::string& target) {
    const auto options = "lowerdir=" + lower + ",upperdir=" + upper + ",workdir=" + work;
    require(::mount("overlay", target.c_str(), "overlay", 0, options.c_str()), "mounting an overlay");
}

} // namespace orbel::test
