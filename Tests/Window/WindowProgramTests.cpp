#include "Support/ChildProcess.h"
#include "Support/TemporaryFolder.h"

#include <fstream>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <QImage>
#include <QProcess>

namespace orbel::test {
namespace {

struct Run {
    int status = -1;
    QByteArray output;
    QByteArray errors;
};

/// The program as a person would start it, in a home of its own and without a session bus.
Run runWindow(const TemporaryFolder& folder, const QStringList& words, const QString& platform) {
    QProcess program;
    auto environment = QProcessEnvironment::systemEnvironment();
    for (const auto* display : {"DISPLAY", "WAYLAND_DISPLAY", "XDG_CONFIG_HOME", "XDG_DATA_HOME"})
        environment.remove(QLatin1String(display));
    environment.insert(QStringLiteral("HOME"), QString::fromStdString(folder.path()));
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), QString::fromStdString(folder.path()));
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), QStringLiteral("unix:path=/nobody"));
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), platform);
    environment.insert(QStringLiteral("QT_QUICK_BACKEND"), QStringLiteral("software"));
    program.setProcessEnvironment(environment);
    program.start(QStringLiteral(ORBEL_WINDOW_PROGRAM), words);
    constexpr int patience = 60'000;
    EXPECT_TRUE(program.waitForFinished(patience));
    return {program.exitCode(), program.readAllStandardOutput(), program.readAllStandardError()};
}

TEST(WindowProgram, ScansTakesAPictureWritesItsDiagnosticsAndEnds) {
    const TemporaryFolder folder;
    folder.file("data/film.mkv", 100'000);
    const auto picture = QString::fromStdString(folder.path("picture"));
    const auto run =
        runWindow(folder,
                  {QStringLiteral("--scan"), QString::fromStdString(folder.path("data")),
                   QStringLiteral("--open"), QStringLiteral("map"), QStringLiteral("--snapshot"), picture,
                   QStringLiteral("--snapshot-delay"), QStringLiteral("0.2"),
                   QStringLiteral("--simulate-hover"), QStringLiteral("5"), QStringLiteral("--diagnostics"),
                   QString::fromStdString(folder.path("times.json")), QStringLiteral("--quit-after-scan")},
                  QStringLiteral("offscreen"));
    EXPECT_EQ(run.status, 0) << run.errors.toStdString();
    EXPECT_TRUE(QImage(picture, "PNG").width() >= 800);

    std::ifstream file(folder.path("times.json"));
    const auto times = nlohmann::json::parse(file);
    double last = 0;
    std::vector<std::string> names;
    for (const auto& mark : times.at("marks")) {
        names.push_back(mark.at("name"));
        EXPECT_GE(mark.at("milliseconds"), last);
        last = mark.at("milliseconds");
    }
    for (const auto* name : {"windowShown", "scanStarted", "scanComplete", "hoverEnded", "snapshotTaken"})
        EXPECT_EQ(std::ranges::count(names, name), 1) << name;
    EXPECT_LT(std::ranges::find(names, "scanStarted"), std::ranges::find(names, "scanComplete"));
    EXPECT_GT(times.at("peakFootprintBytes"), 1'000'000);
}

TEST(WindowProgram, StartsAndScansBesideServersThatNeverAnswer) {
    if (!isRoot())
        GTEST_SKIP() << "mounting needs root";
    const TemporaryFolder folder;
    for (const auto* place : {"OneDrive", "nas", "Applications"})
        folder.folder(place);
    folder.link("Pictures", folder.path("nas/pictures"));
    folder.file("docs/film.mkv", 100'000);
    inChildProcess([&] {
        useOwnMountTable();
        for (const auto* place : {"OneDrive", "nas", "Applications"})
            mountDead(folder.path(place));
        const auto run =
            runWindow(folder,
                      {QStringLiteral("--scan"), QString::fromStdString(folder.path()),
                       QStringLiteral("--open"), QStringLiteral("large"), QStringLiteral("--snapshot"),
                       QString::fromStdString(folder.path("picture")), QStringLiteral("--snapshot-delay"),
                       QStringLiteral("0.5"), QStringLiteral("--quit-after-scan")},
                      QStringLiteral("offscreen"));
        EXPECT_EQ(run.status, 0) << run.errors.toStdString();
    });
}

TEST(WindowProgram, SaysWhichFileItCouldNotWrite) {
    const TemporaryFolder folder;
    const auto run = runWindow(folder,
                               {QStringLiteral("--scan"), QString::fromStdString(folder.path()),
                                QStringLiteral("--snapshot"), QStringLiteral("/nowhere/picture.png"),
                                QStringLiteral("--snapshot-delay"), QStringLiteral("0"),
                                QStringLiteral("--quit-after-scan")},
                               QStringLiteral("offscreen"));
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(run.errors.contains("/nowhere/picture.png")) << run.errors.toStdString();
}

TEST(WindowProgram, ShowsAScanThatWasKeptAndEndsWhereItCannot) {
    const TemporaryFolder folder;
    folder.file("data/film.mkv", 100'000);
    const auto file = QString::fromStdString(folder.path("kept"));
    ASSERT_EQ(runWindow(folder,
                        {QStringLiteral("--scan-json"), QString::fromStdString(folder.path("data")),
                         QStringLiteral("--save"), file},
                        QStringLiteral("offscreen"))
                  .status,
              0);
    const auto picture = QString::fromStdString(folder.path("picture"));
    const QStringList words{QStringLiteral("--open-scan"), file, QStringLiteral("--snapshot"), picture,
                            QStringLiteral("--quit-after-scan")};
    const auto shown = runWindow(folder, words, QStringLiteral("offscreen"));
    EXPECT_EQ(shown.status, 0) << shown.errors.toStdString();
    EXPECT_TRUE(QImage(picture, "PNG").width() >= 800);
    folder.file("kept", "nothing of the kind");
    const auto refused = runWindow(folder, words, QStringLiteral("offscreen"));
    EXPECT_EQ(refused.status, 1);
    EXPECT_TRUE(refused.errors.contains("is not a scan file")) << refused.errors.toStdString();
}

TEST(WindowProgram, RunsTheCommandsWithoutADisplayAndSaysSoOfTheWindow) {
    const TemporaryFolder folder;
    const auto window = runWindow(folder, {}, QStringLiteral("xcb"));
    EXPECT_EQ(window.status, 1);
    EXPECT_EQ(window.errors.count('\n'), 1) << window.errors.toStdString();
    EXPECT_TRUE(window.errors.contains("--scan-json"));
    const auto report =
        runWindow(folder, {QStringLiteral("--scan-json"), QString::fromStdString(folder.path())},
                  QStringLiteral("xcb"));
    EXPECT_EQ(report.status, 0);
    EXPECT_EQ(nlohmann::json::parse(report.output.toStdString()).at("root"), folder.path());
    const auto help = runWindow(folder, {QStringLiteral("--help")}, QStringLiteral("xcb"));
    EXPECT_TRUE(help.output.contains("--snapshot FILE")) << "of the window as well";
}

} // namespace
} // namespace orbel::test
