#include "Services/LiveDesktop.h"
#include "Support/TemporaryFolder.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <QStandardPaths>
#include <QtTest/QTest>

namespace orbel::test {

namespace {

/// By name.
using Scripts = std::vector<std::pair<std::string, std::string>>;

/// A desktop with these programs, each a shell script, before all others.
class ProgramsInPath {
public:
    explicit ProgramsInPath(const Scripts& scripts) {
        for (const auto& [name, script] : scripts) {
            const auto program = folder_.file(name, "#!/bin/sh\n" + script + "\n");
            std::filesystem::permissions(program, std::filesystem::perms::owner_all);
        }
        qputenv("PATH", QByteArray::fromStdString(folder_.path()) + ':' + before_);
    }
    ~ProgramsInPath() { qputenv("PATH", before_); }
    ProgramsInPath(const ProgramsInPath&) = delete;
    ProgramsInPath& operator=(const ProgramsInPath&) = delete;

private:
    TemporaryFolder folder_;
    QByteArray before_ = qgetenv("PATH");
};

} // namespace

TEST(LiveDesktop, SaysWhenNoProgramOpensWhatWasAskedFor) {
    LiveDesktop desktop;
    QStringList said;
    desktop.reportFailure = [&](const QString& words) { said << words; };
    {
        const ProgramsInPath opener(Scripts{{"xdg-open", "exit 4"}});
        desktop.openTrash("/home/mira/.local/share/Trash/files");
        EXPECT_TRUE(QTest::qWaitFor([&] { return said.size() == 1; }));
        EXPECT_TRUE(said.value(0).contains(QStringLiteral("/home/mira/.local/share/Trash/files")));
        desktop.open("/tmp/notes.pdf");
        EXPECT_TRUE(QTest::qWaitFor([&] { return said.size() == 2; }));
        EXPECT_TRUE(said.value(1).contains(QStringLiteral("/tmp/notes.pdf")));
    }
    const ProgramsInPath opener(Scripts{{"xdg-open", "exit 0"}});
    desktop.open("/tmp/notes.pdf");
    desktop.openTrash("/nowhere");
    QTest::qWait(300);
    EXPECT_EQ(said.size(), 2);
}

TEST(LiveDesktop, ATerminalOpensInTheFolderWhateverItIsCalled) {
    const TemporaryFolder places;
    const auto written = places.path("written");
    const auto folder = places.folder("a; touch broken $(x) \xff'\"");
    const auto file = places.file("a; touch broken $(x) \xff'\"/film.mkv", "x");
    const auto opensIn = [&](LiveDesktop& desktop, const std::string& path) {
        std::filesystem::remove(written);
        desktop.openTerminal(path);
        EXPECT_TRUE(QTest::qWaitFor([&] { return std::filesystem::exists(written); }));
        QTest::qWait(50);
        std::ifstream stream(written);
        return std::string(std::istreambuf_iterator<char>(stream), {});
    };
    const std::string noting = "printf '%s %s %s' \"${0##*/}\" $# \"$(pwd -P)\" > '" + written + ".new'; mv '"
                               + written + ".new' '" + written + "'";
    {
        const ProgramsInPath programs(Scripts{{"xdg-terminal-exec", noting}});
        LiveDesktop desktop;
        EXPECT_TRUE(desktop.hasTerminal());
        EXPECT_EQ(opensIn(desktop, folder), "xdg-terminal-exec 0 " + folder);
        EXPECT_EQ(opensIn(desktop, file), "xdg-terminal-exec 0 " + folder);
        QStringList said;
        desktop.reportFailure = [&](const QString& words) { said << words; };
        desktop.openTerminal(places.path("gone"));
        EXPECT_TRUE(QTest::qWaitFor([&] { return !said.isEmpty(); }));
    }
    if (!QStandardPaths::findExecutable(QStringLiteral("xdg-terminal-exec")).isEmpty())
        GTEST_SKIP() << "this desktop has the program that knows the user's choice";
    const ProgramsInPath programs(Scripts{
        {"x-terminal-emulator", "exit 1"}, {"my-terminal", noting}, {"gsettings", "echo \"'my-terminal'\""}});
    LiveDesktop desktop;
    EXPECT_EQ(opensIn(desktop, folder), "my-terminal 0 " + folder) << "the user's choice";
}

} // namespace orbel::test
