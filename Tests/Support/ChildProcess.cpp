#include "Support/ChildProcess.h"

#include <csignal>
#include <cstdio>
#include <grp.h>
#include <gtest/gtest.h>
#include <stdexcept>
#include <vector>

#include <fcntl.h>
#include <linux/capability.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orbel::test {

namespace {

void require(int result, const char* what) {
    if (result != 0)
        throw std::runtime_error(what);
}

bool hasPassed(pid_t child) {
    int status = 0;
    const bool ended = child > 0 && ::waitpid(child, &status, 0) == child;
    const bool passed = ended && WIFEXITED(status) && WEXITSTATUS(status) == 0;
    EXPECT_TRUE(passed) << "the child process failed or died; wait status " << status;
    return passed;
}

} // namespace

bool inChildProcess(const std::function<void()>& body) {
    return hasPassed(startChildProcess(body));
}

bool inChildProcesses(std::size_t count, const std::function<void(std::size_t)>& body) {
    std::vector<int> children;
    for (std::size_t i = 0; i < count; ++i)
        children.push_back(startChildProcess([&body, i] { body(i); }));
    bool allPassed = true;
    for (const int child : children)
        allPassed = hasPassed(child) && allPassed;
    return allPassed;
}

int startChildProcess(const std::function<void()>& body) {
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
    return child;
}

void killChildProcess(int process) {
    ASSERT_GT(process, 0);
    ASSERT_EQ(::kill(process, SIGKILL), 0);
    ASSERT_EQ(::waitpid(process, nullptr, 0), process);
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

void holdProgramsToPermissions() {
    for (const unsigned long right : {CAP_DAC_OVERRIDE, CAP_DAC_READ_SEARCH})
        require(::prctl(PR_CAPBSET_DROP, right, 0, 0, 0), "dropping a capability");
}

void useOwnMountTable() {
    require(::unshare(CLONE_NEWNS), "unshare");
    require(::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr), "making mounts private");
}

void mountTmpfs(const char* folder, const std::string& size) {
    require(::mount("tmpfs", folder, "tmpfs", 0, ("size=" + size).c_str()), "mounting a tmpfs");
}

void bindMount(const char* source, const char* target) {
    require(::mount(source, target, nullptr, MS_BIND, nullptr), "a bind mount");
}

void mountDead(const std::string& folder) {
    // Left open: with its last descriptor the file system ends, and every question to it is answered.
    const int server = ::open("/dev/fuse", O_RDWR | O_CLOEXEC);
    require(server < 0 ? -1 : 0, "opening /dev/fuse");
    const auto options = "fd=" + std::to_string(server) + ",rootmode=40000,user_id=0,group_id=0";
    require(::mount("dead", folder.c_str(), "fuse.dead", MS_NOSUID | MS_NODEV, options.c_str()),
            "mounting a dead file system");
}

void mountOverlay(const std::string& lower, const std::string& upper, const std::string& work,
                  const std::string& target) {
    const auto options = "lowerdir=" + lower + ",upperdir=" + upper + ",workdir=" + work + ",xino=off";
    require(::mount("overlay", target.c_str(), "overlay", 0, options.c_str()), "mounting an overlay");
}

} // namespace orbel::test
