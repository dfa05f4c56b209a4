#include "Delete/InUse.h"

#include <benchmark/benchmark.h>
#include <csignal>
#include <filesystem>
#include <spawn.h>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

namespace orbel {
namespace {

/// Programs that do nothing but sleep, ended when this goes.
class Sleepers {
public:
    explicit Sleepers(long count) {
        std::vector<std::string> words{"sleep", "1000"};
        std::vector<char*> pointers{words[0].data(), words[1].data(), nullptr};
        for (long i = 0; i < count; ++i)
            if (pid_t pid = 0; ::posix_spawnp(&pid, "sleep", nullptr, nullptr, pointers.data(), environ) == 0)
                pids_.push_back(pid);
        ::usleep(200'000); // until all have loaded their libraries
    }
    Sleepers(const Sleepers&) = delete;
    Sleepers& operator=(const Sleepers&) = delete;
    ~Sleepers() {
        for (const pid_t pid : pids_)
            ::kill(pid, SIGKILL);
        for (const pid_t pid : pids_)
            ::waitpid(pid, nullptr, 0);
    }

private:
    std::vector<pid_t> pids_;
};

void takeSnapshot(benchmark::State& state) {
    const Sleepers sleepers(state.range(0));
    std::size_t processes = 0;
    std::size_t files = 0;
    for (auto _ : state) {
        const auto snapshot = takeMappedSnapshot();
        processes = snapshot.processes.processes.size();
        files = 0;
        for (const auto& process : snapshot.processes.processes)
            files += process.files.size();
    }
    state.counters["processes"] = static_cast<double>(processes);
    state.counters["files"] = static_cast<double>(files);
}
BENCHMARK(takeSnapshot)->Arg(0)->Arg(400)->Unit(benchmark::kMillisecond)->UseRealTime();

/// One question about a file, then about a folder, /usr/include or what there is of it.
void askAboutItem(benchmark::State& state, const std::string& path) {
    const auto stamp = FileStamp::of(path);
    if (!stamp) {
        state.SkipWithError("not there");
        return;
    }
    const Sleepers sleepers(400);
    const auto snapshot = takeMappedSnapshot();
    for (auto _ : state)
        benchmark::DoNotOptimize(inUse(path, *stamp, snapshot));
}
BENCHMARK_CAPTURE(askAboutItem, file, "/etc/passwd")->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(askAboutItem, folder, "/usr/include")->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace orbel
