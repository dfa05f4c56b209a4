#pragma once

#include <nlohmann/json_fwd.hpp>

namespace orbel {

struct JournalEntry;
struct MoveIntent;
struct TrashedIdentity;

// Entries and intents as JSON objects: every key is the name of a field, absent fields are left out, dates
// are as iso8601() writes them (docs/journal-format.md). Reading throws nlohmann::json::exception where
// entryInLine() would be absent; the target may then be half filled.

void to_json(nlohmann::json& object, const TrashedIdentity& identity);
void to_json(nlohmann::json& object, const JournalEntry& entry);
void from_json(const nlohmann::json& object, JournalEntry& entry);
void to_json(nlohmann::json& object, const MoveIntent& intent);
void from_json(const nlohmann::json& object, MoveIntent& intent);

} // namespace orbel
