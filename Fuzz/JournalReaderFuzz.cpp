#include "Journal/JournalJson.h"
#include "Journal/JournalLine.h"
#include "Journal/JournalReading.h"
#include "Journal/MoveIntent.h"
#include "Journal/RecordedIds.h"
#include "Util/Check.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include <unistd.h>

// Whatever bytes are in the journal's place: reading them never fails, what is read is what the JSON library
// sees in the line, is written again as a line that reads the same, and does not depend on how the file is
// cut into pieces. What is looked for by its bytes is found where the entries have it, and nowhere else.

namespace orbel {
namespace {

using nlohmann::json;

/// Whether everything in `part` is in `whole` with the same value.
bool contains(const json& whole, const json& part) {
    if (!part.is_object())
        return whole == part;
    for (const auto& [key, value] : part.items())
        if (!whole.is_object() || !whole.contains(key) || !contains(whole[key], value))
            return false;
    return true;
}

void tryLine(std::string_view line) {
    const json parsed = json::parse(line, nullptr, false);
    ORBEL_CHECK(entryInLine(line) == entryByLibrary(line), "a plain line says what the library reads");
    if (const auto entry = entryInLine(line)) {
        ORBEL_CHECK(contains(parsed, *entry), "an entry says what its line says");
        const auto again = journalLine(*entry);
        ORBEL_CHECK(again && entryInLine(*again) == entry, "an entry survives being written");
    }
    try {
        const auto intent = parsed.get<MoveIntent>();
        ORBEL_CHECK(json(intent).get<MoveIntent>() == intent, "an intent survives being written");
    } catch (const json::exception&) {
        return; // no intent
    }
}

JournalLines linesOf(std::string_view bytes, std::uint64_t pieceBytes) {
    static const int file = ::fileno(std::tmpfile());
    ORBEL_CHECK(::ftruncate(file, 0) == 0, "the temporary file can be emptied");
    ORBEL_CHECK(::pwrite(file, bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size()),
                "the temporary file can be written");
    return {FileDescriptor(::dup(file)), bytes.size(), "journal", pieceBytes};
}

void tryIds(const JournalLines& lines, const std::vector<JournalEntry>& entries) {
    std::vector<std::string> ids;
    std::vector<std::string> referredTo;
    RecordedIds expected;
    for (const auto& entry : entries) {
        ids.push_back(entry.id);
        expected.outcomes.emplace(entry.id, entry.result);
        if (!entry.refersTo)
            continue;
        referredTo.push_back(*entry.refersTo);
        if (entry.result == JournalEntry::Result::restored)
            expected.restored.insert(*entry.refersTo);
    }
    ORBEL_CHECK(recordedIds(lines, ids, referredTo) == expected, "ids are found by their bytes");
    ORBEL_CHECK(restoredIds(lines) == expected.restored, "put backs are found by their bytes");
}

void tryPieces(std::string_view bytes, const std::vector<JournalEntry>& entries) {
    for (const std::uint64_t pieceBytes : {bytes.size() / 3 + 1, bytes.size() + 1}) {
        const auto lines = linesOf(bytes, pieceBytes);
        ORBEL_CHECK(readEntries(lines) == entries, "the pieces of a file do not matter");
        tryIds(lines, entries);
    }
}

} // namespace
} // namespace orbel

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    orbel::tryLine(bytes.substr(0, bytes.find('\n')));
    orbel::tryPieces(bytes, orbel::entriesIn(bytes));
    return 0;
}
