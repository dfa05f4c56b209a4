#include "Delete/DeletionSession.h"

#include "Platform/BlockingWork.h"
#include "Util/Uuid.h"

#include <utility>

namespace orbel {

DeletionSession::DeletionSession(Trasher trasher)
    : trasher_(std::make_shared<const Trasher>(std::move(trasher))) {}

void DeletionSession::registerItems(std::span<const DeletionItem> items) {
    for (const auto& item : items)
        items_.insert_or_assign(item.id, item);
}

std::optional<DeletionItem> DeletionSession::item(const std::string& id) const {
    const auto found = items_.find(id);
    return found == items_.end() ? std::nullopt : std::optional(found->second);
}

std::future<DeletionReport> DeletionSession::run(std::span<const std::string> ids, Trasher::Progress progress,
                                                 Trasher::IsCancelled isCancelled) const {
    auto move = prepared(ids);
    return BlockingWork::run("orbel.deletion",
                             [move = std::move(move), progress = std::move(progress),
                              isCancelled = std::move(isCancelled)] { return move(progress, isCancelled); });
}

DeletionSession::Move DeletionSession::prepared(std::span<const std::string> ids) const {
    std::vector<DeletionItem> approved;
    for (const auto& id : ids)
        if (const auto found = items_.find(id); found != items_.end())
            approved.push_back(found->second);
    return [trasher = trasher_, approved = std::move(approved)](const Trasher::Progress& progress,
                                                                const Trasher::IsCancelled& isCancelled) {
        return trasher->run(approved, newUuid(), progress, isCancelled);
    };
}

} // namespace orbel
