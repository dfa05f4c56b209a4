#include "Journal/JournalLine.h"

#include "Journal/EntryReader.h"
#include "Journal/JournalJson.h"
#include "Journal/PlainLine.h"
#include "Util/JsonText.h"
#include "Util/Utf8.h"

#include <nlohmann/json.hpp>

namespace orbel {

namespace {

using nlohmann::json;

/// Passes on what the JSON library finds, under the names that it calls.
struct LibraryEvents {
    EntryReader& reader;

    // NOLINTBEGIN(readability-identifier-naming): the library calls them by these names
    bool null() const { return reader.null(); }
    bool boolean(bool value) const { return reader.truth(value); }
    bool number_integer(json::number_integer_t value) const { return reader.negativeNumber(value); }
    bool number_unsigned(json::number_unsigned_t value) const { return reader.number(value); }
    bool number_float(json::number_float_t, const std::string&) const { return reader.otherNumber(); }
    bool string(std::string& value) const { return reader.text(value); }
    static bool binary(json::binary_t&) { return false; }
    bool start_object(std::size_t) const { return reader.beginObject(); }
    bool key(std::string& name) const { return reader.name(name); }
    bool end_object() const { return reader.endObject(); }
    bool start_array(std::size_t) const { return reader.beginArray(); }
    bool end_array() const { return reader.endArray(); }
    static bool parse_error(std::size_t, const std::string&, const json::exception&) { return false; }
    // NOLINTEND(readability-identifier-naming)
};

bool canBeFoundAgain(const JournalEntry& entry) {
    const auto isText = [](const std::optional<std::string>& path) { return !path || isValidUtf8(*path); };
    return isText(entry.originalPath) && isText(entry.originalParentRealPath)
           && isText(entry.approvedRealPath) && isText(entry.trashPath);
}

} // namespace

std::expected<std::string, JournalError> journalLine(const JournalEntry& entry) {
    using enum JournalEntry::Result;
    if ((entry.result == trashed || entry.result == restored) && !canBeFoundAgain(entry))
        return std::unexpected(JournalError{.words = "a path that is not valid text cannot be journalled"});
    return compactJson(entry);
}

std::optional<JournalEntry> entryInLine(std::string_view line) {
    if (EntryReader reader; readPlainLine(line, reader))
        return reader.take();
    return entryByLibrary(line);
}

std::optional<JournalEntry> entryByLibrary(std::string_view line) {
    // The library takes a zero byte for the end of the text, and would not look at what follows.
    if (line.find('\0') != std::string_view::npos)
        return std::nullopt;
    EntryReader reader;
    LibraryEvents events{reader};
    if (!json::sax_parse(line.begin(), line.end(), &events))
        return std::nullopt;
    return reader.take();
}

} // namespace orbel
