#include "Delete/InUse.h"
#include "Support/ChildProcess.h"
#include "Support/OtherProcess.h"
#include "Support/RunProgram.h"
#include "Support/TemporaryFolder.h"

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <spawn.h>
#include <stdexcept>

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orbel {
namespace {

namespace fs = std::filesystem;
using test::keepMapped;
using test::keepOpen;
using test::OtherProcess;
using test::TemporaryFolder;
using Users = std::vector<ProcessUse>;

InUseReport inUseNow(const std::string& path) {
    return inUse(path, FileStamp::of(path).value(), takeMappedSnapshot());
}

TEST(InUse, SeesEveryWayToUseAFile) {
    const TemporaryFolder home;
    const auto file = home.file("file");
    for (const auto& use : {keepOpen, keepMapped}) {
        const OtherProcess other("reader", [&] { use(file); });
        const auto report = inUseNow(file);
        EXPECT_EQ(report.users, (Users{{other.pid(), "reader"}}));
        EXPECT_EQ(report.reason, "In use by reader");
        EXPECT_TRUE(inUseNow(home.path()).reason) << "of a folder, what is inside it";
    }
    EXPECT_FALSE(inUseNow(file).reason) << "it has ended";
    {
        const OtherProcess mover("mover", [&] { ::open(file.c_str(), O_PATH | O_CLOEXEC); });
        EXPECT_FALSE(inUseNow(file).reason) << "held, as before a move, and not read or written";
    }

    const auto folder = home.folder("folder/inner");
    {
        const OtherProcess other("worker", [&] { fs::current_path(folder); });
        EXPECT_EQ(inUseNow(folder).reason, "In use by worker");
        EXPECT_EQ(inUseNow(home.path("folder")).reason, "In use by worker");
        EXPECT_FALSE(inUseNow(file).reason);
    }

    auto program = home.path("sleeper with a long name");
    fs::copy_file("/bin/sleep", program);
    std::string time = "1000";
    char* const words[] = {program.data(), time.data(), nullptr};
    pid_t pid = 0;
    ASSERT_EQ(::posix_spawn(&pid, program.c_str(), nullptr, nullptr, words, environ), 0);
    EXPECT_EQ(inUseNow(program).reason, "In use by sleeper with a long name") << "not cut to 15 bytes";
    ::kill(pid, SIGKILL);
    EXPECT_EQ(::waitid(P_PID, static_cast<id_t>(pid), nullptr, WEXITED | WNOWAIT), 0);
    EXPECT_FALSE(inUseNow(program).reason) << "nobody has asked yet how it ended";
    ::waitpid(pid, nullptr, 0);

    const int own = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
    EXPECT_FALSE(inUseNow(file).reason) << "this process does not count";
    ::close(own);
}

TEST(InUse, KnowsWhatIsInAFolderByOtherNames) {
    const TemporaryFolder home;
    home.file("folder/deep/file");
    home.hardLink("outside", "folder/deep/file");
    home.file("folder2/file");
    const auto other = [&](const char* relative) {
        return std::make_unique<OtherProcess>("reader", [&] { keepOpen(home.path(relative)); });
    };
    {
        const auto reader = other("outside");
        EXPECT_TRUE(inUseNow(home.path("folder")).reason);
        EXPECT_TRUE(inUseNow(home.path("folder/deep/file")).reason);
        EXPECT_FALSE(inUseNow(home.path("folder2")).reason);
    }
    {
        const auto reader = other("folder2/file");
        EXPECT_TRUE(inUseNow(home.path("folder2")).reason);
        EXPECT_FALSE(inUseNow(home.path("folder")).reason) << "the beginning of a name is not a folder";
    }
    if (!test::isRoot())
        GTEST_SKIP() << "mounting needs root";
    home.folder("view");
    const OtherProcess reader("reader", [&] {
        test::useOwnMountTable();
        test::bindMount(home.path("folder").c_str(), home.path("view").c_str());
        keepMapped(home.path("view/deep/file"));
    });
    EXPECT_TRUE(inUseNow(home.path("folder")).reason) << "seen through a mount that only the process has";
}

TEST(InUse, TellsDeletedFilesFromOddlyNamedOnes) {
    for (const auto& use : {keepOpen, keepMapped}) {
        const TemporaryFolder home;
        const auto odd = home.file("odd/name\\012 with\na line feed (deleted)");
        home.file("folder/gone");
        home.file("folder/kept");
        home.hardLink("elsewhere/kept", "folder/kept");
        const OtherProcess reader("reader", [&] {
            for (const auto& path : {odd, home.path("folder/gone"), home.path("folder/kept")})
                use(path);
            fs::remove(home.path("folder/gone"));
            fs::remove(home.path("folder/kept"));
        });
        EXPECT_TRUE(inUseNow(odd).reason);
        EXPECT_TRUE(inUseNow(home.path("odd")).reason);
        EXPECT_FALSE(inUseNow(home.path("folder")).reason) << "what is open was in it, and is no longer";
        EXPECT_TRUE(inUseNow(home.path("elsewhere")).reason);
    }
}

TEST(InUse, CountsWhatItMayNotLookAt) {
    if (!test::isRoot())
        GTEST_SKIP() << "becoming another user needs root";
    // The test itself is the process that the other user may not look at.
    test::inChildProcess([] {
        test::becomeOtherUser();
        const TemporaryFolder home;
        const auto file = home.file("file");
        const auto report = inUseNow(file);
        EXPECT_FALSE(report.reason);
        EXPECT_GE(report.uncheckedProcesses, 1);
        std::size_t all = 0;
        for (const auto& entry : fs::directory_iterator("/proc"))
            all += std::isdigit(entry.path().filename().string()[0]) != 0 ? 1 : 0;
        EXPECT_LT(report.uncheckedProcesses, all) << "the kernel's own and this one do not count";
    });
    test::inChildProcess([] {
        test::useOwnMountTable();
        if (::mount("proc", "/proc", "proc", 0, "hidepid=2") != 0)
            return; // a container may forbid it
        test::becomeOtherUser();
        EXPECT_GE(takeMappedSnapshot().processes.unchecked, 1) << "hidden processes are not taken for none";
    });
}

TEST(InUse, SeesMountedImages) {
    const TemporaryFolder home;
    const auto image = home.file("images/disk.img", std::size_t{1} << 20);
    const auto attached =
        test::isRoot() ? test::runProgram({"losetup", "--find", "--show", image}) : test::ProgramRun{};
    if (attached.status != 0)
        GTEST_SKIP() << "a loop device needs root, losetup and a system that lends one: " << attached.errors;
    EXPECT_EQ(inUseNow(image).reason, "In use by loop device");
    EXPECT_EQ(inUseNow(home.path("images")).users, (Users{{0, "loop device"}}));
    const auto device = attached.output.substr(0, attached.output.find('\n'));
    EXPECT_EQ(test::runProgram({"losetup", "--detach", device}).status, 0);
}

TEST(InUse, SeesSocketsThatAProgramListensAt) {
    const TemporaryFolder home;
    const auto path = home.path("run/service.sock");
    home.folder("run");
    fs::permissions(home.path(), fs::perms(0755)); // another user looks at it too
    const auto listen = [&] {
        sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
        path.copy(address.sun_path, sizeof address.sun_path - 1);
        const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
        if (::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0
            || ::listen(socket, 1) != 0)
            throw std::runtime_error("listen");
        return socket;
    };
    {
        const OtherProcess server("server", listen);
        EXPECT_EQ(inUseNow(path).users, (Users{{server.pid(), "server"}}));
        EXPECT_EQ(inUseNow(home.path("run")).reason, "In use by server");
        fs::rename(path, home.path("aside"));
        home.file("run/service.sock");
        EXPECT_FALSE(inUseNow(path).reason) << "another file by that name";
        fs::remove(path);
        fs::rename(home.path("aside"), path);
        if (test::isRoot())
            test::inChildProcess([&] {
                test::becomeOtherUser();
                EXPECT_EQ(inUseNow(path).reason, "In use by another program") << "whose, may not be told";
            });
    }
    EXPECT_FALSE(inUseNow(path).reason) << "the file stays, and nothing is behind it";
    fs::remove(path);
    const int own = listen();
    EXPECT_FALSE(inUseNow(path).reason) << "this process does not count";
    ::close(own);
}

TEST(InUse, NamesEachProgramOnceInStableOrder) {
    const FileStamp stamp{.identity = {.device = 1, .inode = 2}};
    const auto reasonFor = [&](const std::vector<std::string>& names) {
        MappedFilesSnapshot snapshot;
        for (const auto& name : names) {
            const int pid = static_cast<int>(snapshot.processes.processes.size()) + 10;
            const platform::UsedFile file{.device = 1, .inode = 2, .path = "/elsewhere"};
            snapshot.processes.processes.push_back({.pid = pid, .name = name, .files = {file}});
        }
        return inUse("/item", stamp, snapshot).reason.value_or("");
    };
    EXPECT_EQ(reasonFor({}), "");
    EXPECT_EQ(reasonFor({"vim", "vim"}), "In use by vim");
    EXPECT_EQ(reasonFor({"vim", "bash", "vim"}), "In use by vim and bash");
    EXPECT_EQ(reasonFor({"c", "b", "a"}), "In use by c, b and a");
    EXPECT_EQ(reasonFor({"d", "c", "b", "a"}), "In use by d, c and 2 more");
    EXPECT_EQ(reasonFor({"d", "c", "d", "b", "a", "e"}), "In use by d, c and 3 more");
    EXPECT_EQ(reasonFor({"two\nlines\xFF", ""}), "In use by two lines\xEF\xBF\xBD and process 11");
}

} // namespace
} // namespace orbel
