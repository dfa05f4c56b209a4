#include "Support/JournalScene.h"

#include "Journal/IntentLog.h"
#include "Platform/FileStatus.h"
#include "Util/PathText.h"
#include "Util/ReadFile.h"
#include "Util/Uuid.h"

#include <algorithm>
#include <filesystem>
#include <stdexcept>

namespace orbel::test {

namespace fs = std::filesystem;

JournalEntry trashedEntry(const std::string& title) {
    return {.id = newUuid(),
            .sessionID = "C0FFEE00-0000-4000-8000-000000000001",
            .time = parseIso8601("2025-01-31T09:05:00Z").value(),
            .module = DeletionModule::largeOld,
            .title = title,
            .originalPath = "/home/ann/" + title,
            .originalParentRealPath = "/home/ann",
            .originalParentIdentity =
                TrashedIdentity{.device = 65024, .inode = 131074, .size = 4096, .isDirectory = true},
            .approvedRealPath = "/home/ann/" + title,
            .root = AllowedRoot::homeItem,
            .bytes = 1'234'567,
            .trashPath = "/home/ann/.local/share/Trash/files/" + title,
            .trashedIdentity =
                TrashedIdentity{.device = 65024,
                                .inode = 18'446'744'073'709'551'615u,
                                .size = 1'234'567,
                                .isDirectory = false,
                                .persistent = {{.volume = "8D4BE3A6-55AB-4ABE-8BEB-3D6F7F9EAE6F/256",
                                                .birthNanos = 1'738'314'300'123'456'789}}},
            .result = JournalEntry::Result::trashed,
            .reason = "none",
            .note = "Frees nothing while other links exist",
            .refersTo = "C0FFEE00-0000-4000-8000-000000000002",
            .appVersion = "1.2.3"};
}

JournalEntry skippedEntry(const std::string& title) {
    return {.id = newUuid(),
            .sessionID = "C0FFEE00-0000-4000-8000-000000000001",
            .time = parseIso8601("2025-01-31T09:06:00Z").value(),
            .title = title,
            .originalPath = "/home/ann/" + title,
            .result = JournalEntry::Result::skipped,
            .reason = "Already gone"};
}

JournalEntry putBackEntry(const JournalEntry& entry, JournalEntry::Result result) {
    auto line = entry;
    line.id = newUuid();
    line.refersTo = entry.id;
    line.result = result;
    line.approvedRealPath.reset();
    line.trashedIdentity.reset();
    line.note.reset();
    return line;
}

std::vector<std::string> titlesOf(const std::vector<JournalEntry>& entries) {
    std::vector<std::string> titles;
    for (const auto& entry : entries)
        titles.push_back(entry.title);
    return titles;
}

std::vector<std::string> idsOf(const std::vector<JournalEntry>& entries) {
    std::vector<std::string> ids;
    for (const auto& entry : entries)
        ids.push_back(entry.id);
    return ids;
}

std::string JournalScene::content() const {
    return readFile(path).value_or("");
}

void JournalScene::write(std::string_view content) const {
    home.file("data/journal.jsonl", content);
}

std::vector<std::string> JournalScene::intentFiles() const {
    std::vector<std::string> files;
    if (fs::exists(home.path("data/intents")))
        for (const auto& entry : fs::directory_iterator(home.path("data/intents")))
            files.push_back(entry.path());
    return files;
}

MoveIntent JournalScene::beginToTrash(const std::string& name) const {
    auto intent = intentOf(MoveIntent::Kind::toTrash, home.file("documents/" + name, "content of " + name),
                           home.path("trash/files/" + name), name);
    intent.entry.trashPath = intent.destinationPath;
    intent.entry.trashedIdentity = TrashedIdentity::of(intent.stamp, intent.persistent);
    return intent;
}

MoveIntent JournalScene::beginPutBack(const std::string& name) const {
    auto intent = intentOf(MoveIntent::Kind::putBack, home.file("trash/files/" + name, "content of " + name),
                           home.path("documents/" + name), name);
    intent.entry = putBackEntry(intent.entry, JournalEntry::Result::restored);
    return intent;
}

MoveIntent JournalScene::intentOf(MoveIntent::Kind kind, const std::string& source,
                                  const std::string& destination, const std::string& trashName) const {
    home.folder("documents");
    home.folder("trash/files");
    const std::string note =
        "[Trash Info]\nPath=" + home.path("documents/" + trashName) + "\nDeletionDate=2025-01-31T10:05:00\n";
    const auto stamp = FileStamp::of(source).value();
    auto entry = trashedEntry(trashName);
    entry.originalPath = home.path("documents/" + trashName);
    return {
        .kind = kind,
        .entry = entry,
        .sourcePath = source,
        .destinationPath = destination,
        .stamp = stamp,
        .persistent = platform::persistentIdentity(source, stamp.identity.inode),
        .infoFile = {{.path = home.file("trash/info/" + trashName + ".trashinfo", note), .content = note}}};
}

void JournalScene::leaveBehind(const std::vector<MoveIntent>& intents) const {
    IntentLog log(path);
    for (const auto& intent : intents)
        if (const auto begun = log.begin({&intent, 1}); !begun)
            throw std::runtime_error(begun.error().words);
}

void move(const MoveIntent& intent) {
    fs::rename(intent.sourcePath, intent.destinationPath);
}

bool exists(const std::string& path) {
    return platform::fileStatus(path).has_value();
}

} // namespace orbel::test
