#include "Journal/MoveRecord.h"

#include "Journal/JournalStore.h"
#include "Journal/PrivateFile.h"
#include "Util/PathText.h"

#include <algorithm>
#include <system_error>

namespace orbel {

MoveRecord::MoveRecord(JournalStore& journal) : journal_(journal), intents_(journal.path()) {}

MoveRecord::~MoveRecord() {
    if (!mustKeepIntents_)
        intents_.close();
}

std::size_t MoveRecord::mostMoves() {
    constexpr std::size_t forTheGroup = 12; // the Trash, the journal, the intents
    constexpr std::size_t forAMove = 2;     // its object, and an info file or a folder to be flushed
    const auto all = descriptorsForOneTask();
    return std::clamp<std::size_t>((all - std::min(all, forTheGroup)) / forAMove, 1, 192);
}

std::expected<void, JournalError> MoveRecord::begin(std::size_t lines) {
    auto folder = openFolder(std::string(parentPath(journal_.path())));
    if (!folder)
        return std::unexpected(folder.error());
    barrier_ = Barrier(*std::move(folder));
    return journal_.preflight(lines, barrier_);
}

std::expected<void, JournalError> MoveRecord::intend(std::span<const MoveIntent> intents) {
    return intents_.begin(intents);
}

std::expected<void, JournalError> MoveRecord::seal() {
    intents_.addTo(barrier_);
    const auto lasts = barrier_.pass();
    if (lasts)
        return {};
    // What the file of intents holds on the disk is in doubt.
    intents_.leave();
    return std::unexpected(errorAt(journal_.path(), std::generic_category().message(lasts.error())));
}

std::expected<void, JournalError> MoveRecord::record(std::span<const JournalEntry> lines) {
    return journal_.append(lines, barrier_);
}

} // namespace orbel
