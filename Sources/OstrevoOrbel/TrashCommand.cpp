#include "TrashCommand.h"

#include "CommandOutput.h"
#include "Delete/DeletionReportJson.h"
#include "Delete/DeletionSession.h"
#include "Delete/LiveTrash.h"
#include "Delete/ManageHint.h"
#include "Delete/ReachReason.h"
#include "Find/BrokenShortcutFinder.h"
#include "Interruption.h"
#include "Safety/SafetyPolicy.h"
#include "Scan/TreeScanner.h"
#include "UserContext.h"
#include "Util/JsonText.h"
#include "Util/PathText.h"
#include "Util/Utf8.h"
#include "Util/Uuid.h"

#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>
#include <system_error>
#include <vector>

namespace orbel {

namespace {

std::string_view withoutTrailingSlashes(std::string_view path) {
    while (path.size() > 1 && path.ends_with('/'))
        path.remove_suffix(1);
    return path;
}

/// Where a path lies whose folder cannot be resolved, as far as text tells.
std::string absolutePath(std::string_view path) {
    std::error_code error;
    const auto here = std::filesystem::current_path(error).string();
    return standardizedPath(path.starts_with('/') ? std::string(path) : joinedPath(here, path));
}

std::string itemPath(std::string_view word, const SafetyPolicy& policy) {
    const auto path = withoutTrailingSlashes(word);
    if (path == "/")
        return "/";
    const auto parent = parentPath(path);
    const auto folder = policy.canonicalizer().canonical(parent.empty() ? "." : std::string(parent));
    return folder ? joinedPath(*folder, lastPathComponent(path)) : absolutePath(path);
}

/// Why what lies at `path` stays there, as far as that can be told without looking into it.
std::optional<std::string> refusalOf(const std::string& path, AllowedRoot root, const SafetyPolicy& policy) {
    if (auto unreached = reachReason(path); unreached && !policy.homeReason())
        return unreached;
    auto refusal = policy.check(path, root, std::nullopt).refusal();
    const auto status = platform::fileStatus(path);
    if (!refusal || policy.homeReason() || !status || status->type == platform::FileType::symbolicLink)
        return refusal;
    return ManageHint::explain(path, *refusal, policy.homePath());
}

DeletionItem refusedItem(const std::string& path, AllowedRoot root, std::string reason) {
    return {.id = std::string(rawValue(DeletionModule::map)) + ":" + path,
            .module = DeletionModule::map,
            .title = lossyUtf8(lastPathComponent(path)),
            .detail = path,
            .path = path,
            .root = root,
            .scanStamp = FileStamp::of(path).value_or(FileStamp()),
            .blockedReason = std::move(reason)};
}

/// A launcher lies where nothing else may be moved from: only as what the search for broken ones finds there.
std::optional<DeletionItem> brokenLauncher(const std::string& path, const SafetyPolicy& policy,
                                           const ScanCancellation& cancellation) {
    if (!path.ends_with(".desktop"))
        return std::nullopt;
    const auto tree = TreeScanner::scan(path, std::nullopt, cancellation, nullptr).tree;
    for (auto& row : BrokenShortcutFinder().run(tree, policy, currentDate()))
        if (row.index == 0 && row.item.root == AllowedRoot::leftover)
            return std::move(row.item);
    return std::nullopt;
}

} // namespace

DeletionItem itemNamed(const std::string& word, const SafetyPolicy& policy,
                       const ScanCancellation& cancellation) {
    const auto path = itemPath(word, policy);
    if (auto launcher = brokenLauncher(path, policy, cancellation))
        return *std::move(launcher);
    const auto root = DeletionItem::isApplicationBundle(path, policy) ? AllowedRoot::applicationBundle
                                                                      : AllowedRoot::homeItem;
    if (auto refusal = refusalOf(path, root, policy))
        return refusedItem(path, root, *std::move(refusal));
    const auto scanned = TreeScanner::scan(path, std::nullopt, cancellation, nullptr);
    auto item = scanned.tree.count() > 0
                    ? DeletionItem::fromTree(scanned.tree, 0, DeletionModule::map, policy)
                    : std::nullopt;
    return item ? *std::move(item) : refusedItem(path, root, "Already gone");
}

void runTrashCommand(const ChangeRequest& request) {
    const auto& cancellation = stopAfterThisItemOnInterrupt();
    const UserContext user;
    const bool mayWrite = !request.isDryRun && !user.policy().homeReason();
    const Trasher trasher(user.policy(), mayWrite ? user.settledJournal() : user.journal(),
                          std::make_shared<LiveTrash>(user.trashFolder()));

    std::vector<DeletionItem> items;
    for (const auto& word : request.operands)
        if (!cancellation.isCancelled())
            items.push_back(itemNamed(word, user.policy(), cancellation));

    const auto isCancelled = [&] { return cancellation.isCancelled(); };
    DeletionReport report;
    if (request.isDryRun) {
        report = trasher.rehearse(items, newUuid(), nullptr, isCancelled);
    } else {
        DeletionSession session(trasher);
        session.registerItems(items);
        std::vector<std::string> ids;
        ids.reserve(items.size());
        for (const auto& item : items)
            ids.push_back(item.id);
        report = session.run(ids, nullptr, isCancelled).get();
    }
    // Cancelled before the first item of the session, the run does not know that there would have been more.
    report.cancelled = report.cancelled || items.size() < request.operands.size();

    nlohmann::json json = report;
    if (request.isDryRun)
        json["dryRun"] = true;
    const bool allMoved = report.skipped.empty() && !report.cancelled;
    finish(prettyJson(json) + "\n", allMoved ? ExitStatus::done : ExitStatus::incomplete);
}

} // namespace orbel
