#include "Export/JournalText.h"

#include "Journal/JournalJson.h"
#include "Safety/ByteFormat.h"
#include "Util/JsonText.h"
#include "Util/Utf8.h"

#include <nlohmann/json.hpp>

namespace orbel {

std::string listItem(std::string_view words, std::string_view path) {
    return lossyUtf8("- " + std::string(words) + "  \n  `" + std::string(path) + "`\n");
}

std::string sessionHeading(Date time) {
    return "## " + iso8601(time) + "\n\n";
}

std::string entryMarkdown(const JournalEntry& entry) {
    std::string words = "**" + std::string(rawValue(entry.result)) + "** " + entry.title;
    if (entry.bytes)
        words += " — " + ByteFormat::string(*entry.bytes);
    if (entry.reason)
        words += " — " + *entry.reason;
    return listItem(words, entry.originalPath);
}

std::string entryJson(const JournalEntry& entry) {
    // Texts hold no line feed: JSON writes it as an escape.
    std::string text;
    for (const char character : "  " + prettyJson(entry)) {
        text += character;
        if (character == '\n')
            text += "  ";
    }
    return text;
}

} // namespace orbel
