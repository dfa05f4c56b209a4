#include "Delete/Trasher.h"
#include "Util/PathText.h"

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <span>
#include <vector>

namespace orbel {
namespace {

namespace fs = std::filesystem;

/// Accepts every move and moves nothing, so that the next round finds the items where they were.
class NoTrash : public TrashOperations {
public:
    std::vector<std::expected<PlannedMove, std::string>> plan(std::span<const std::string> paths,
                                                              Barrier&) override {
        std::vector<std::expected<PlannedMove, std::string>> plans;
        for (const auto& path : paths)
            plans.push_back(PlannedMove{.path = path, .trashPath = path});
        return plans;
    }

    std::expected<std::unique_ptr<TrashMove>, TrashFailure> prepare(const PlannedMove& move,
                                                                    Barrier&) override {
        return std::make_unique<Move>(move.path);
    }

private:
    class Move : public TrashMove {
    public:
        explicit Move(std::string path) : path_(std::move(path)) {}
        std::expected<std::string, TrashFailure> make(Barrier&) override { return path_; }

    private:
        std::string path_;
    };
};

/// A home with a number of small files, 100 to a folder, as deep as such files usually lie.
class Home {
public:
    explicit Home(int files) {
        std::string pattern = (fs::temp_directory_path() / "orbel-bench-XXXXXX").string();
        if (::mkdtemp(pattern.data()) == nullptr)
            std::abort();
        path_ = fs::canonical(pattern);
        for (int i = 0; i < files; ++i) {
            const auto folder = path_ + "/Documents/projects/a/b/" + std::to_string(i / 100);
            fs::create_directories(folder);
            const auto file = folder + "/file " + std::to_string(i);
            std::ofstream(file) << "x";
            items_.push_back({.id = "map:" + file,
                              .title = std::string(lastPathComponent(file)),
                              .detail = file,
                              .path = file,
                              .scanStamp = FileStamp::of(file).value()});
        }
    }
    ~Home() { fs::remove_all(path_); }
    Home(const Home&) = delete;
    Home& operator=(const Home&) = delete;

    const std::string& path() const { return path_; }
    const std::vector<DeletionItem>& items() const { return items_; }

private:
    std::string path_;
    std::vector<DeletionItem> items_;
};

/// All checks of a session of small files, with the processes that run here.
void checksOfASession(benchmark::State& state) {
    const Home home(static_cast<int>(state.range(0)));
    const Trasher trasher(SafetyPolicy(home.path()), std::make_shared<JournalStore>(home.path() + "/journal"),
                          std::make_shared<NoTrash>());
    for (auto _ : state) {
        const auto report = trasher.rehearse(home.items(), "session", nullptr, nullptr);
        if (report.moved.size() != home.items().size())
            state.SkipWithError(report.skipped.front().reason.c_str());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.counters["perItem"] = benchmark::Counter(static_cast<double>(state.iterations() * state.range(0)),
                                                   benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(checksOfASession)->Arg(10'000)->Unit(benchmark::kMillisecond);

/// The same with the journal's writing and verification, but no move: what the disk takes to make lines last.
void journalOfASession(benchmark::State& state) {
    const Home home(static_cast<int>(state.range(0)));
    const Trasher trasher(SafetyPolicy(home.path()), std::make_shared<JournalStore>(home.path() + "/journal"),
                          std::make_shared<NoTrash>());
    for (auto _ : state)
        benchmark::DoNotOptimize(trasher.run(home.items(), "session", nullptr, nullptr));
    state.counters["perItem"] = benchmark::Counter(static_cast<double>(state.iterations() * state.range(0)),
                                                   benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(journalOfASession)->Arg(500)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace orbel
