#include "Commands/CommandOutput.h"
#include "Commands/CommandTable.h"
#include "Commands/Interruption.h"
#include "Commands/ItemJson.h"
#include "Commands/KeepOption.h"
#include "Commands/PathList.h"
#include "Commands/Request.h"
#include "Commands/UserContext.h"
#include "Delete/DeletionReportJson.h"
#include "Delete/DeletionSession.h"
#include "Delete/ItemNote.h"
#include "Delete/LiveTrash.h"
#include "Delete/ManageHint.h"
#include "Delete/RepositoryNote.h"
#include "Find/BrokenShortcutFinder.h"
#include "Platform/Parallel.h"
#include "Safety/SafetyPolicy.h"
#include "Scan/TreeScanner.h"
#include "Util/JsonPath.h"
#include "Util/JsonText.h"
#include "Util/PathText.h"
#include "Util/Utf8.h"
#include "Util/Uuid.h"

#include <array>
#include <filesystem>
#include <limits>
#include <memory>
#include <nlohmann/json.hpp>
#include <span>
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

std::string itemPath(std::string_view word, const SafetyPolicy& policy, PathResolver& paths) {
    const auto path = withoutTrailingSlashes(word);
    if (path == "/")
        return "/";
    const auto parent = parentPath(path);
    const auto folder = policy.canonical(parent.empty() ? "." : std::string(parent), paths);
    return folder ? joinedPath(*folder, lastPathComponent(path)) : absolutePath(path);
}

/// Why what lies at `path` stays there, as far as that can be told without looking into it.
std::optional<std::string> refusalOf(const std::string& path, AllowedRoot root, const SafetyPolicy& policy,
                                     SafetyPolicy::SeenFolders& seen) {
    auto refusal = policy.check(path, root, std::nullopt, seen).refusal();
    if (!refusal || policy.homeReason() || policy.isOutOfReach(path))
        return refusal;
    const auto status = platform::fileStatus(path);
    if (!status || status->type == platform::FileType::symbolicLink)
        return refusal;
    return ManageHint::explain(path, *refusal, policy.homePath(), &seen);
}

DeletionItem refusedItem(const std::string& path, AllowedRoot root, std::string reason,
                         const SafetyPolicy& policy) {
    const auto stamp = policy.isOutOfReach(path) ? std::nullopt : FileStamp::of(path);
    auto item = DeletionItem::unasked(path, DeletionModule::map, root, stamp.value_or(FileStamp()), 0);
    item.blockedReason = std::move(reason);
    return item;
}

/// A launcher lies where nothing else may be moved from: only as what the search for broken ones finds there.
std::optional<DeletionItem> brokenLauncher(const std::string& path, const SafetyPolicy& policy,
                                           const ScanCancellation& cancellation) {
    if (!path.ends_with(".desktop") || policy.isOutOfReach(path))
        return std::nullopt;
    const auto tree = TreeScanner::scan(path, std::nullopt, cancellation, nullptr).tree;
    for (auto& row : BrokenShortcutFinder().run(tree, policy, currentDate()))
        if (row.index == 0 && row.item.root == AllowedRoot::leftover)
            return std::move(row.item);
    return std::nullopt;
}

/// The item of a file that may be asked about and is no launcher: no scan is needed.
std::optional<DeletionItem> fileAt(const std::string& path, const SafetyPolicy& policy,
                                   SafetyPolicy::SeenFolders& seen) {
    if (path.ends_with(".desktop") || policy.homeReason() || policy.isOutOfReach(path))
        return std::nullopt;
    const auto status = platform::fileStatus(path);
    if (!status || status->type != platform::FileType::regular)
        return std::nullopt;
    return DeletionItem::fromFile(path, *status, DeletionModule::map, policy, seen);
}

/// The item at a path, itself and never what a link leads to. What may not be moved is an item with its
/// reason, and so is what does not exist; a folder that may not be moved is not measured.
DeletionItem itemAt(const std::string& path, const SafetyPolicy& policy, SafetyPolicy::SeenFolders& seen,
                    const ScanCancellation& cancellation) {
    if (auto launcher = brokenLauncher(path, policy, cancellation))
        return *std::move(launcher);
    if (auto file = fileAt(path, policy, seen))
        return *std::move(file);
    const auto root = DeletionItem::isApplicationBundle(path, policy) ? AllowedRoot::applicationBundle
                                                                      : AllowedRoot::homeItem;
    if (auto refusal = refusalOf(path, root, policy, seen))
        return refusedItem(path, root, *std::move(refusal), policy);
    const auto scanned = TreeScanner::scan(path, std::nullopt, cancellation, nullptr);
    auto item = scanned.tree.count() > 0
                    ? DeletionItem::fromTree(scanned.tree, 0, DeletionModule::map, policy, seen)
                    : std::nullopt;
    if (!item)
        return refusedItem(path, root, "Already gone", policy);
    if (item->isSelectable())
        item->note = ItemNote::joined(item->note, repositoryNote(scanned.tree, 0));
    return *std::move(item);
}

/// The items that the words of the command line name: in the real path of its folder what is called by its
/// last component. Once cancelled, only those that are known already.
std::vector<DeletionItem> itemsNamed(std::span<const std::string> words, const SafetyPolicy& policy,
                                     const ScanCancellation& cancellation) {
    std::vector<std::optional<DeletionItem>> found(words.size());
    // A scan of a folder takes all processors by itself.
    constexpr std::size_t filesPerThread = 32; // fewer are found before another thread has started
    forEachRange(words.size(), filesPerThread, [&](std::size_t begin, std::size_t end) {
        auto seen = policy.seenFolders();
        for (auto i = begin; i < end && !cancellation.isCancelled(); ++i)
            found[i] = fileAt(itemPath(words[i], policy, seen.paths), policy, seen);
    });
    std::vector<DeletionItem> items;
    items.reserve(words.size());
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (!found[i] && !cancellation.isCancelled()) {
            auto seen = policy.seenFolders();
            found[i] = itemAt(itemPath(words[i], policy, seen.paths), policy, seen, cancellation);
        }
        if (auto& item = found[i])
            items.push_back(*std::move(item));
    }
    return items;
}

/// The copy that `--keep` names. One that could not stay ends the process: nothing has been touched yet.
std::optional<KeptCopy> keptCopyIn(const Request& request, const UserContext& user) {
    const auto word = request.value("--keep");
    if (!word)
        return std::nullopt;
    auto paths = user.policy().resolver();
    const auto path = itemPath(*word, user.policy(), paths);
    auto keep = isPathInside(path, user.trashFolder())
                    ? std::unexpected(std::string("lies in the Trash, so it would not stay"))
                    : keptCopyAt(path);
    if (!keep)
        finishWrongUsage("--keep " + *word + ": " + keep.error());
    return *std::move(keep);
}

void run(const Request& request) {
    const auto words = pathsIn(request); // first, because Ctrl+C still ends a wait for the list
    const auto& cancellation = stopAfterThisItemOnInterrupt();
    const bool isDryRun = request.has("--dry-run");
    const UserContext user;
    const auto keep = keptCopyIn(request, user);
    const bool mayWrite = !isDryRun && !user.policy().homeReason();
    const Trasher trasher(user.policy(), mayWrite ? user.settledJournal() : user.journal(),
                          std::make_shared<LiveTrash>(user.trashFolder()));

    auto items = itemsNamed(words, user.policy(), cancellation);

    const auto isCancelled = [&] { return cancellation.isCancelled(); };
    if (keep)
        if (const auto* kept = requireCopies(*keep, items, isCancelled))
            finishWrongUsage("--keep " + keep->path + ": " + kept->path + " is that very file");
    DeletionReport report;
    if (isDryRun) {
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
    report.cancelled = report.cancelled || items.size() < words.size();

    nlohmann::json json = report;
    for (std::size_t i = 0; i < report.skipped.size(); ++i) { // a path that is not valid text never moves
        putPath(json["skipped"][i], "path", report.skipped[i].path);
        putAdvice(json["skipped"][i], report.skipped[i].reason);
        putCommand(json["skipped"][i], report.skipped[i].path, report.skipped[i].reason);
    }
    if (isDryRun)
        json["dryRun"] = true;
    const bool allMoved = report.skipped.empty() && !report.cancelled;
    finish(prettyJson(json) + "\n", allMoved ? ExitStatus::done : ExitStatus::incomplete);
}

constexpr std::array options{CommandOption{.name = "--files0-from", .takes = "FILE"},
                             CommandOption{.name = "--keep", .takes = "COPY"},
                             CommandOption{.name = "--dry-run"}};

} // namespace

constinit const Command trashCommand{
    .name = "--trash",
    .operands = "PATH...",
    .mostOperands = std::numeric_limits<std::size_t>::max(),
    .options = options,
    .isChange = true,
    .help =
        "Check each PATH, move it to the Trash and record that in the journal; print what was moved and what "
        "was skipped, and why, as JSON. With --files0-from, the paths are those in FILE (\"-\" is standard "
        "input), each ended by a NUL. With --keep, only what is the same in every byte as the file COPY is "
        "moved, and only as long as COPY stays as it is. With --dry-run everything is checked and nothing is "
        "written anywhere. Ctrl+C stops after the item in progress.",
    .run = run,
};

} // namespace orbel
