#include "PrivateBus.h"
#include "Services/SingleInstance.h"

#include <future>
#include <gtest/gtest.h>
#include <QTest>

namespace orbel::test {
namespace {

/// A start beside the first one: on a thread of its own, as it waits for the first one to answer.
bool startAnother(const QDBusConnection& bus, const QString& folder, const InstanceRequest& request) {
    bool claimed = false;
    const std::unique_ptr<QThread> start(
        QThread::create([&] { claimed = SingleInstance(bus, folder).claim(request); }));
    start->start();
    constexpr int patience = 10'000;
    EXPECT_TRUE(QTest::qWaitFor([&] { return start->isFinished(); }, patience));
    start->wait();
    return claimed;
}

void handsOver(const std::function<QDBusConnection()>& connect, const QString& folder) {
    const InstanceRequest request{.scanPath = "/not \xFF text",
                                  .openScanPath = "/a b/\xFE",
                                  .screen = Screen::map,
                                  .app = "a “b”",
                                  .activationToken = "t1"};
    std::vector<InstanceRequest> taken;
    {
        SingleInstance first(connect(), folder);
        QObject::connect(&first, &SingleInstance::requested,
                         [&](const InstanceRequest& asked) { taken.push_back(asked); });
        EXPECT_TRUE(first.claim({}));
        EXPECT_FALSE(startAnother(connect(), folder, request));
        EXPECT_FALSE(startAnother(connect(), folder, {}));
        QTest::qWait(20);
    }
    EXPECT_EQ(taken, (std::vector{request, InstanceRequest()}));
    EXPECT_TRUE(startAnother(connect(), folder, {})) << "the first one is gone";
}

TEST(SingleInstance, HandsOverOnTheSessionBus) {
    PrivateBus bus;
    handsOver([&] { return bus.connect(); }, QString());
}

TEST(SingleInstance, HandsOverByALockFileWithoutABus) {
    const TemporaryFolder folder;
    handsOver([] { return QDBusConnection(QStringLiteral("none")); }, QString::fromStdString(folder.path()));
}

TEST(SingleInstance, IsNotForScriptedRuns) {
    LaunchOptions options;
    options.scanPath = "/data";
    EXPECT_TRUE(SingleInstance::appliesTo(options));
    options.quitAfterScan = true;
    EXPECT_FALSE(SingleInstance::appliesTo(options));
}

TEST(InstanceRequest, TakesARelativePathFromHereAndNonsenseAsNothing) {
    LaunchOptions options;
    options.scanPath = "below";
    options.openScanPath = "kept.orbel";
    const auto here = std::filesystem::current_path().string();
    EXPECT_EQ(InstanceRequest::of(options).scanPath, here + "/below");
    EXPECT_EQ(InstanceRequest::of(options).openScanPath, here + "/kept.orbel");
    for (const auto* text : {"", "[]", "{\"scan\":7}", "{\"scan\":\"http://x\",\"screen\":\"Map\"}"})
        EXPECT_EQ(InstanceRequest::fromText(text), InstanceRequest()) << text;
}

} // namespace
} // namespace orbel::test
