#include "Journal/JournalJson.h"

#include "Journal/JournalLine.h"
#include "Journal/MoveIntent.h"
#include "Safety/StampJson.h"
#include "Util/JsonText.h"
#include "Util/StrictJson.h"

#include <nlohmann/json.hpp>

namespace orbel {

using nlohmann::json;

namespace {

template <class Value>
void putIfPresent(json& object, const char* key, const std::optional<Value>& value) {
    if (value)
        object[key] = *value;
}

json persistentJson(const platform::PersistentIdentity& identity) {
    json object = json::object();
    object["volume"] = identity.volume;
    object["birthNanos"] = identity.birthNanos;
    return object;
}

} // namespace

// Member by member: a list of all of them is built twice, which costs more than the members.

void to_json(json& object, const TrashedIdentity& identity) {
    object["device"] = identity.device;
    object["inode"] = identity.inode;
    object["size"] = identity.size;
    object["isDirectory"] = identity.isDirectory;
    if (identity.persistent)
        object["persistent"] = persistentJson(*identity.persistent);
}

void to_json(json& object, const JournalEntry& entry) {
    object["id"] = entry.id;
    object["sessionID"] = entry.sessionID;
    object["time"] = iso8601(entry.time);
    object["module"] = rawValue(entry.module);
    object["title"] = entry.title;
    object["originalPath"] = entry.originalPath;
    object["root"] = rawValue(entry.root);
    object["mode"] = entry.mode;
    object["result"] = rawValue(entry.result);
    object["appVersion"] = entry.appVersion;
    putIfPresent(object, "originalParentRealPath", entry.originalParentRealPath);
    putIfPresent(object, "originalParentIdentity", entry.originalParentIdentity);
    putIfPresent(object, "approvedRealPath", entry.approvedRealPath);
    putIfPresent(object, "bytes", entry.bytes);
    putIfPresent(object, "trashPath", entry.trashPath);
    putIfPresent(object, "trashedIdentity", entry.trashedIdentity);
    putIfPresent(object, "reason", entry.reason);
    putIfPresent(object, "note", entry.note);
    putIfPresent(object, "refersTo", entry.refersTo);
}

void from_json(const json& object, JournalEntry& entry) {
    auto read = entryInLine(compactJson(object));
    if (!read)
        throw json::type_error::create(302, "this is no journal entry", &object);
    entry = *std::move(read);
}

void to_json(json& object, const MoveIntent& intent) {
    object["kind"] = rawValue(intent.kind);
    object["entry"] = intent.entry;
    object["sourcePath"] = intent.sourcePath;
    object["destinationPath"] = intent.destinationPath;
    object["stamp"] = intent.stamp;
    if (intent.persistent)
        object["persistent"] = persistentJson(*intent.persistent);
    if (intent.infoFile)
        object["infoFile"] = {{"path", intent.infoFile->path}, {"content", intent.infoFile->content}};
}

void from_json(const json& object, MoveIntent& intent) {
    const auto kind = fromRawValue<MoveIntent::Kind>(textAt(object, "kind"));
    if (!kind)
        rejectMember(object, "kind");
    intent = {.kind = *kind,
              .entry = object.at("entry").get<JournalEntry>(),
              .sourcePath = textAt(object, "sourcePath"),
              .destinationPath = textAt(object, "destinationPath"),
              .stamp = object.at("stamp").get<FileStamp>()};
    if (const auto* persistent = optionalAt(object, "persistent"))
        intent.persistent = {.volume = textAt(*persistent, "volume"),
                             .birthNanos = signedAt(*persistent, "birthNanos")};
    if (const auto* infoFile = optionalAt(object, "infoFile"))
        intent.infoFile = {.path = textAt(*infoFile, "path"), .content = textAt(*infoFile, "content")};
}

} // namespace orbel
