#pragma once

#include "AppModel/AppModel.h"
#include "FakeDesktop.h"
#include "Support/TemporaryFolder.h"

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <QTest>
#include <string>
#include <vector>

namespace orbel::test {

/// A model without a window whose world is the test's: time, disk, permission, notifications. Scans of paths
/// last until the test lets them end.
class ModelScene {
public:
    /// One call of the scanner.
    struct Scan {
        std::string root;
        const ScanCancellation* token = nullptr;
        ScanProgressCallback progress;
    };
    struct Posted final : Notifier {
        void requestPermission(std::function<void(bool)> answer) override;
        void post(const LowDiskAlert::Message& message) override;

        int permissionRequests = 0;
        std::vector<LowDiskAlert::Message> messages;
    };

    ModelScene();
    ~ModelScene();

    AppModel& model();

    /// Runs the event loop until this holds; fails the test when that takes too long.
    void waitUntil(const std::function<bool()>& met) const;
    /// Waits for the n-th call of the scanner, from 0, and lets it end with this result.
    Scan scan(std::size_t number) const;
    void endScan(std::size_t number, ScanResult result) const;
    /// Starts a scan and lets it end with that result.
    void scanWith(const std::string& root, ScanResult result);

    AppEnvironment environment; ///< to be changed before the model is first asked for
    /// What the model is told when it asks.
    struct World {
        std::mutex mutex;
        std::optional<bool> permission = true;
        std::optional<VolumeInfo> volume =
            VolumeInfo{.total = 1000, .free = 300, .used = 600, .availableForImportantUsage = 300};
        std::optional<std::uint64_t> trash{}; ///< bytes in it
        std::chrono::system_clock::time_point now{std::chrono::hours(1)};
    };
    /// Locked as long as what this returns lives: the model's threads ask too, and may outlive the scene.
    class LockedWorld {
    public:
        explicit LockedWorld(World& world) : lock_(world.mutex), world_(&world) {}
        World* operator->() const { return world_; }

    private:
        std::unique_lock<std::mutex> lock_;
        World* world_;
    };
    LockedWorld world() const { return LockedWorld(*world_); }

    std::shared_ptr<Posted> posted = std::make_shared<Posted>();
    std::shared_ptr<FakeDesktop> desktop = std::make_shared<FakeDesktop>();

private:
    struct Scanner;

    TemporaryFolder folder_;
    std::shared_ptr<Scanner> scanner_;
    std::shared_ptr<World> world_ = std::make_shared<World>();
    std::unique_ptr<AppModel> model_;
};

/// A finished scan of "/data": two films (100 and 50 bytes), a document (20) and a folder that could not be
/// read.
ScanResult sampleScan(bool cancelled = false);

} // namespace orbel::test
