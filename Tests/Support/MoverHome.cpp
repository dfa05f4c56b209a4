#include "Support/MoverHome.h"

#include "Support/Policies.h"
#include "Util/PathText.h"

#include <filesystem>

namespace orbel::test {

namespace fs = std::filesystem;

MoverHome::MoverHome()
    : policy(path(), linuxOptions()),
      journal(std::make_shared<JournalStore>(path(".local/share/Ostrevo Orbel/journal.jsonl"))),
      fakeTrash(std::make_shared<FakeTrash>(trashed(""))),
      now(std::chrono::sys_days{std::chrono::year{2025} / 1 / 31} + std::chrono::hours{9}),
      trasher(policy, journal, fakeTrash) {
    trasher.now = [this] { return now; };
    trasher.takeMappedSnapshot = [this] {
        ++snapshots;
        return MappedFilesSnapshot{.takenAt = now, .processes = {}};
    };
    trasher.inUse = [this](const std::string&, const FileStamp&, const MappedFilesSnapshot&) {
        return inUse;
    };
}

DeletionItem MoverHome::item(std::string_view relative, DeletionModule module) const {
    const auto place = path(relative);
    return {.id = std::string(rawValue(module)) + ":" + place,
            .module = module,
            .title = std::string(lastPathComponent(place)),
            .detail = place,
            .path = place,
            .scanStamp = FileStamp::of(place).value()};
}

std::vector<DeletionItem> MoverHome::files(const std::vector<std::string>& names) const {
    std::vector<DeletionItem> items;
    for (const auto& name : names) {
        file(name, name);
        items.push_back(item(name));
    }
    return items;
}

DeletionReport MoverHome::run(const std::vector<DeletionItem>& items,
                              const Trasher::IsCancelled& isCancelled) const {
    return trasher.run(items, "session", nullptr, isCancelled);
}

std::vector<std::string> MoverHome::intentFiles() const {
    std::vector<std::string> files;
    std::error_code missing;
    for (const auto& entry : fs::directory_iterator(path(".local/share/Ostrevo Orbel/intents"), missing))
        files.push_back(entry.path().string());
    return files;
}

void MoverHome::breakJournal() const {
    fs::create_directories(parentPath(journal->path()));
    if (fs::exists(journal->path()))
        fs::rename(journal->path(), journal->path() + ".aside");
    fs::create_directory(journal->path());
}

void MoverHome::mendJournal() const {
    fs::remove(journal->path());
    if (fs::exists(journal->path() + ".aside"))
        fs::rename(journal->path() + ".aside", journal->path());
}

std::string skipReason(const DeletionReport& report) {
    return report.skipped.size() == 1 ? report.skipped.front().reason : std::to_string(report.skipped.size());
}

} // namespace orbel::test
