#include "ModelScene.h"

#include "SampleDisk.h"
#include "Support/TreeBuilder.h"

#include <condition_variable>
#include <gtest/gtest.h>
#include <map>

namespace orbel::test {

/// Shared with the threads that scan. A cancelled scan without a result ends as the real one does.
struct ModelScene::Scanner {
    std::mutex mutex;
    std::condition_variable changed;
    std::vector<Scan> calls;
    std::map<std::size_t, ScanResult> results;

    ScanResult run(const std::string& root, const ScanCancellation& token,
                   const ScanProgressCallback& progress) {
        std::unique_lock lock(mutex);
        const auto number = calls.size();
        calls.push_back({root, &token, progress});
        while (!results.contains(number) && !token.isCancelled())
            changed.wait_for(lock, std::chrono::milliseconds(1));
        return results.contains(number) ? std::move(results[number]) : sampleScan(true);
    }
};

void ModelScene::Posted::requestPermission(std::function<void(bool)> answer) {
    ++permissionRequests;
    answer(true);
}

void ModelScene::Posted::post(const LowDiskAlert::Message& message) {
    messages.push_back(message);
}

ModelScene::ModelScene() : scanner_(std::make_shared<Scanner>()) {
    environment.home = folder_.folder("home");
    environment.dataVolumePath = "/data";
    environment.trashFolder = folder_.path("Trash");
    environment.journalPath = folder_.path("journal.jsonl");
    environment.scan = [scanner = scanner_](const auto& root, const auto& token, const auto& progress,
                                            const auto& /*exclusions*/) {
        return scanner->run(root, token, progress);
    };
    environment.readVolume = [world = world_](const std::string&) { return LockedWorld(*world)->volume; };
    environment.mountTable = [] { return std::vector<platform::Mount>(); };
    environment.measureTrash = [world = world_](const std::string&) { return LockedWorld(*world)->trash; };
    environment.isFullDiskAccessGranted = [world = world_](const std::string&) {
        return LockedWorld(*world)->permission;
    };
    environment.systemPlaces = SampleDisk::systemPlaces;
    environment.findLargeOld = [](const auto& query, const auto& tree, const auto& policy, Date now,
                                  const auto& isCancelled) {
        return query.run(tree, policy, now, {}, isCancelled);
    };
    environment.now = [world = world_] { return LockedWorld(*world)->now; };
    environment.settings = std::make_shared<QSettings>(QString::fromStdString(folder_.path("settings.ini")),
                                                       QSettings::IniFormat);
    environment.notifier = posted;
    environment.desktop = desktop;
}

ModelScene::~ModelScene() = default;

AppModel& ModelScene::model() {
    if (!model_)
        model_ = std::make_unique<AppModel>(environment);
    return *model_;
}

void ModelScene::waitUntil(const std::function<bool()>& met) const {
    constexpr int patience = 10'000;
    EXPECT_TRUE(QTest::qWaitFor(met, patience));
}

ModelScene::Scan ModelScene::scan(std::size_t number) const {
    std::optional<Scan> found;
    waitUntil([&] {
        const std::scoped_lock lock(scanner_->mutex);
        if (number < scanner_->calls.size())
            found = scanner_->calls[number];
        return found.has_value();
    });
    return found.value_or(Scan());
}

void ModelScene::endScan(std::size_t number, ScanResult result) const {
    const std::scoped_lock lock(scanner_->mutex);
    scanner_->results[number] = std::move(result);
    scanner_->changed.notify_all();
}

void ModelScene::scanWith(const std::string& root, ScanResult result) {
    std::size_t number = 0;
    {
        const std::scoped_lock lock(scanner_->mutex);
        number = scanner_->calls.size();
    }
    model().scan()->startScan(root);
    scan(number);
    endScan(number, std::move(result));
    waitUntil([this] { return !model().scan()->isScanning(); });
}

ScanResult sampleScan(bool cancelled) {
    TreeBuilder builder("/data");
    const auto films = builder.folder(0, "films");
    builder.file(films, "a.mkv", 100);
    builder.file(films, "b.mkv", 50);
    builder.file(0, "notes.pdf", 20);
    builder.folder(0, "it's closed", NodeFlags::unreadable);
    builder.tree.unreadableCount = 1;
    ScanResult result;
    result.tree = builder.build();
    result.cancelled = cancelled;
    result.duration = 8.4;
    return result;
}

} // namespace orbel::test
