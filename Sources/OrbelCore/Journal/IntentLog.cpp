#include "Journal/IntentLog.h"

#include "Journal/JournalJson.h"
#include "Journal/PrivateFile.h"
#include "Platform/Synchronise.h"
#include "Util/PathText.h"
#include "Util/Uuid.h"

#include <nlohmann/json.hpp>

#include <unistd.h>

namespace orbel {

IntentLog::IntentLog(const std::string& journalPath)
    : folder_(joinedPath(parentPath(journalPath), folderName)) {}

std::expected<void, JournalError> IntentLog::begin(const MoveIntent& intent) {
    std::string line;
    try {
        line = nlohmann::json(intent).dump() + "\n";
    } catch (const nlohmann::json::exception&) {
        return std::unexpected(JournalError{.words = "a path that is not valid text cannot be journalled"});
    }
    if (!file_)
        if (auto opened = open(); !opened)
            return opened;
    if (appendBytes(file_.get(), line) == line.size() && platform::synchronise(file_.get()))
        return {};
    const auto error = systemErrorAt(path_);
    // What the file holds now cannot be relied on. The next intent gets a file of its own; this one is left
    // to be settled, since an earlier intent in it may still be needed.
    file_.reset();
    path_.clear();
    return std::unexpected(error);
}

void IntentLog::close() {
    // Should the file stay all the same, or come back after a power cut, settling it finds every line in the
    // journal.
    if (!path_.empty())
        static_cast<void>(::unlink(path_.c_str()));
    path_.clear();
    file_.reset();
}

std::expected<void, JournalError> IntentLog::open() {
    const auto folder = openFolder(folder_);
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
        if (!platform::synchronise(folder->get()))
            return std::unexpected(systemErrorAt(path));
        file_ = std::move(made->file);
        path_ = path;
        return {};
    }
    return std::unexpected(errorAt(folder_, "every new file in it is removed at once"));
}

} // namespace orbel
