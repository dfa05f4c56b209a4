#include "Delete/DeletionItemJson.h"

#include "Delete/DeletionItem.h"
#include "Safety/StampJson.h"
#include "Util/FileUrl.h"
#include "Util/RawValue.h"
#include "Util/StrictJson.h"

#include <nlohmann/json.hpp>

namespace orbel {

using nlohmann::json;

namespace {

template <class Enum>
Enum caseAt(const json& object, const char* key) {
    const auto value = fromRawValue<Enum>(textAt(object, key));
    if (!value)
        rejectMember(object, key);
    return *value;
}

std::optional<std::string> optionalTextAt(const json& object, const char* key) {
    return optionalAt(object, key) == nullptr ? std::nullopt : std::optional(textAt(object, key));
}

} // namespace

void to_json(json& object, const KeptCopy& keep) {
    object = {{"path", keep.path}, {"stamp", keep.stamp}};
}

void from_json(const json& object, KeptCopy& keep) {
    keep = {.path = textAt(object, "path"), .stamp = object.at("stamp").get<FileStamp>()};
}

void to_json(json& object, const DeletionItem& item) {
    object = {{"id", item.id},
              {"module", rawValue(item.module)},
              {"title", item.title},
              {"detail", item.detail},
              {"url", fileUrl(item.path)},
              {"root", rawValue(item.root)},
              {"scanStamp", item.scanStamp},
              {"estimatedBytes", item.estimatedBytes}};
    if (item.keep)
        object["keep"] = *item.keep;
    if (item.blockedReason)
        object["blockedReason"] = *item.blockedReason;
    if (item.note)
        object["note"] = *item.note;
}

void from_json(const json& object, DeletionItem& item) {
    auto path = pathOfFileUrl(textAt(object, "url"));
    if (!path)
        rejectMember(object, "url");
    item = {.id = textAt(object, "id"),
            .module = caseAt<DeletionModule>(object, "module"),
            .title = textAt(object, "title"),
            .detail = textAt(object, "detail"),
            .path = *std::move(path),
            .root = caseAt<AllowedRoot>(object, "root"),
            .scanStamp = object.at("scanStamp").get<FileStamp>(),
            .estimatedBytes = unsignedAt(object, "estimatedBytes"),
            .blockedReason = optionalTextAt(object, "blockedReason"),
            .note = optionalTextAt(object, "note")};
    if (const auto* keep = optionalAt(object, "keep"))
        item.keep = keep->get<KeptCopy>();
}

} // namespace orbel
