#include "Journal/IntentLog.h"

#include "Journal/Barrier.h"
#include "Journal/JournalJson.h"
#include "Journal/PrivateFile.h"
#include "Util/PathText.h"
#include "Util/Uuid.h"

#include <nlohmann/json.hpp>

#include <unistd.h>

namespace orbel {

IntentLog::IntentLog(const std::string& journalPath)
    : folder_(joinedPath(parentPath(journalPath), folderName)) {}

std::expected<void, JournalError> IntentLog::begin(std::span<const MoveIntent> intents) {
    std::string lines;
    try {
        for (const auto& intent : intents)
            lines += nlohmann::json(intent).dump() + "\n";
    } catch (const nlohmann::json::exception&) {
        return std::unexpected(JournalError{.words = "a path that is not valid text cannot be journalled"});
    }
    if (!file_)
        if (auto opened = open(); !opened)
            return opened;
    if (appendBytes(file_.get(), lines) == lines.size())
        return {};
    const auto error = systemErrorAt(path_);
    // What the file holds now cannot be relied on, and an earlier intent in it may still be needed.
    leave();
    return std::unexpected(error);
}

void IntentLog::addTo(Barrier& barrier) {
    if (file_)
        barrier.add(file_.get());
    if (newFolder_)
        barrier.add(newFolder_.get());
    newFolder_.reset();
}

void IntentLog::leave() {
    file_.reset();
    newFolder_.reset();
    path_.clear();
}

void IntentLog::close() {
    // Should the file stay all the same, or come back after a power cut, settling it finds every line in the
    // journal.
    if (!path_.empty())
        static_cast<void>(::unlink(path_.c_str()));
    leave();
}

std::expected<void, JournalError> IntentLog::open() {
    auto folder = openFolder(folder_);
    if (!folder)
        return std::unexpected(folder.error());
    for (int attempt = 0; attempt < 100; ++attempt) {
        const std::string name = newUuid() + fileSuffix;
        const std::string path = joinedPath(folder_, name);
        auto made = PrivateFile::open(folder->get(), name, PrivateFile::Access::makeForAppend, path);
        if (!made)
            return std::unexpected(made.error());
        if (!waitForLock(made->file.get()))
            return std::unexpected(systemErrorAt(path));
        // Before it was locked, another process may have taken it for one that was left behind, and removed
        // it.
        if (!made->isStillAt(folder->get(), name))
            continue;
        file_ = std::move(made->file);
        newFolder_ = *std::move(folder);
        path_ = path;
        return {};
    }
    return std::unexpected(errorAt(folder_, "every new file in it is removed at once"));
}

} // namespace orbel
