#include "Journal/JournalLine.h"
#include "Journal/JournalStore.h"
#include "Journal/RecordedIds.h"
#include "Platform/Process.h"
#include "Util/Uuid.h"

#include <array>
#include <benchmark/benchmark.h>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace orbel {
namespace {

/// A journal in a temporary folder of its own, removed with it.
class Journal {
public:
    Journal() {
        std::string pattern = (std::filesystem::temp_directory_path() / "orbel-journal-XXXXXX").string();
        if (::mkdtemp(pattern.data()) == nullptr)
            std::abort();
        folder_ = pattern;
    }
    Journal(const Journal&) = delete;
    Journal& operator=(const Journal&) = delete;
    ~Journal() { std::filesystem::remove_all(folder_); }

    std::string path() const { return (folder_ / "journal.jsonl").string(); }

private:
    std::filesystem::path folder_;
};

/// A line of about 600 bytes when the name is made of single letters.
JournalEntry entryOf(const std::string& name) {
    const std::string folder = "/home/ann/Pictures/2019/Summer";
    return {.id = newUuid(),
            .sessionID = newUuid(),
            .time = currentDate(),
            .module = DeletionModule::largeOld,
            .title = name,
            .originalPath = folder + "/" + name,
            .originalParentRealPath = folder,
            .approvedRealPath = folder + "/" + name,
            .bytes = 12'345'678,
            .trashPath = "/home/ann/.local/share/Trash/files/" + name,
            .trashedIdentity = TrashedIdentity{.device = 65024, .inode = 1'234'567, .size = 12'345'678},
            .result = JournalEntry::Result::trashed};
}

/// What a line costs to read depends on its names: ASCII, UTF-8, and those that only the JSON library reads.
constexpr std::array<const char*, 3> names{"IMG_20190801_1234.jpg",
                                           "Stra\xC3\x9F"
                                           "enb\xC3\xA4ume \xE6\x9C\xA8.jpg",
                                           "a \"quoted\" name.jpg"};

void readJournal(benchmark::State& state) {
    constexpr int lines = 200'000;
    const Journal journal;
    {
        std::ofstream file(journal.path(), std::ios::binary);
        for (int i = 0; i < lines; ++i)
            file << *journalLine(entryOf(names[static_cast<std::size_t>(state.range(0))])) << '\n';
    }
    const auto bytes = std::filesystem::file_size(journal.path());
    const JournalStore store(journal.path());
    for (auto _ : state)
        if (store.entries().size() != lines)
            state.SkipWithError("lines are missing");
    state.SetBytesProcessed(static_cast<std::int64_t>(bytes) * state.iterations());
    state.counters["lineBytes"] = static_cast<double>(bytes) / lines;
    // Of the whole process so far: only the first of these is told its own.
    state.counters["peakToFile"] =
        static_cast<double>(platform::peakFootprintBytes()) / static_cast<double>(bytes);
}
BENCHMARK(readJournal)->DenseRange(0, 2)->Unit(benchmark::kMillisecond)->UseRealTime();

/// Settling looks for the ids of its intents, few of which have a line.
void findIdsInJournal(benchmark::State& state) {
    constexpr int lines = 500'000;
    const Journal journal;
    std::vector<std::string> ids;
    {
        std::ofstream file(journal.path(), std::ios::binary);
        for (int i = 0; i < lines; ++i) {
            const auto entry = entryOf(names[0]);
            file << *journalLine(entry) << '\n';
            if (i % 100 == 0)
                ids.push_back(entry.id);
        }
    }
    const auto known = ids.size();
    while (ids.size() < 2 * known)
        ids.push_back(newUuid());
    const JournalStore store(journal.path());
    for (auto _ : state) {
        const auto found = store.recorded(ids, ids);
        if (!found || found->outcomes.size() != known)
            state.SkipWithError("ids are missing");
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(std::filesystem::file_size(journal.path()))
                            * state.iterations());
}
BENCHMARK(findIdsInJournal)->Unit(benchmark::kMillisecond)->UseRealTime();

void appendToJournal(benchmark::State& state) {
    const Journal journal;
    JournalStore store(journal.path());
    const auto entry = entryOf(names[0]);
    for (auto _ : state) {
        if (!store.preflight() || !store.append(entry))
            state.SkipWithError("cannot append");
    }
}
BENCHMARK(appendToJournal)->Unit(benchmark::kMicrosecond)->UseRealTime();

} // namespace
} // namespace orbel
