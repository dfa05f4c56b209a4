#include "AppModel/CompareFlow.h"

#include "AppModel/KeptScanFlow.h"
#include "Compare/GrownFolders.h"
#include "Models/FreedAside.h"
#include "Models/Wording.h"
#include "Safety/PathCanonicalizer.h"
#include "Util/FileUrl.h"
#include "Util/PathText.h"

#include <algorithm>

namespace orbel {

namespace {

GrowthModel::Content growthIn(const ComparedScans& scans, Date since, const std::string& home) {
    GrowthModel::Content content{.since = since, .folders = {}, .failure = {}};
    const auto& tree = *scans.after;
    for (const auto& grown : grownFolders(scans.comparison, *scans.before, tree)) {
        const auto path = tree.path(grown.node, PathCanonicalizer::shared());
        content.folders.push_back({.node = grown.node,
                                   .place = path,
                                   .path = textOf(tildePath(path, home)),
                                   .kind = static_cast<int>(mainKind(kindTotals(tree, grown.node))),
                                   .bytes = grown.grownBytes});
    }
    return content;
}

Date dateOf(const ScanArchive::Entry& entry) {
    return entry.header.origin.measuredAt;
}

std::expected<KeptScan, QString> readIn(const ScanArchive& archive, const ScanArchive::Entry& entry) {
    auto kept = archive.read(entry);
    if (!kept)
        return std::unexpected(textOf(kept.error()));
    return *std::move(kept);
}

/// Those of `entries` that are among the others too.
std::vector<ScanArchive::Entry> stillThere(std::vector<ScanArchive::Entry> entries,
                                           const std::vector<ScanArchive::Entry>& others) {
    std::erase_if(entries, [&](const auto& entry) {
        return std::ranges::find(others, entry.path, &ScanArchive::Entry::path) == others.end();
    });
    return entries;
}

} // namespace

CompareFlow::CompareFlow(const AppEnvironment& environment, const ScanFlow& scan,
                         const KeptScanSettings& keeping, Notice& notice)
    : environment_(environment), scan_(scan), keeping_(keeping), notice_(notice) {
    connect(&scan, &ScanFlow::scanFinished, this, &CompareFlow::begin);
    connect(&scan, &ScanFlow::treeChanged, this, &CompareFlow::follow);
}

CompareFlow::Outcome CompareFlow::compare(std::shared_ptr<const FileTree> before,
                                          std::shared_ptr<const FileTree> after, Date since,
                                          const std::string& home, bool isNeeded) {
    auto scans =
        std::make_unique<const ComparedScans>(ComparedScans::of(std::move(before), std::move(after)));
    Outcome outcome{.content = growthIn(*scans, since, home), .chosen = since};
    if (isNeeded)
        outcome.compared = freedAside(std::move(scans), true);
    return outcome;
}

void CompareFlow::begin() {
    clear();
    if (scan_.isForeign() || scan_.isPartial() || !scan_.hasTree() || environment_.scansFolder.empty())
        return;
    tree_ = scan_.tree();
    job_.run(
        [archive = ScanArchive(environment_.scansFolder), tree = tree_, origin = scan_.origin(),
         home = environment_.home, isNeeded = isNeeded(), isKept = scan_.isKept(), keeps = keeping_.keeps()] {
            // Of a kept scan, only those are earlier that were made before it.
            const auto end = isKept ? origin.measuredAt : Date::max();
            Outcome outcome;
            auto entries = archive.of(tree->rootPath);
            std::erase_if(entries, [&](const Entry& entry) { return dateOf(entry) >= end; });
            if (auto earlier = archive.newest(tree->rootPath, tree->exclusions.patterns, end))
                outcome = compare(std::make_shared<const FileTree>(std::move(earlier->tree)), tree,
                                  earlier->origin.measuredAt, home, isNeeded);
            if (!isKept && keeps) {
                if (const auto kept = archive.keep(*tree, origin, currentDate()); !kept)
                    outcome.content.failure = textOf(kept.error());
                // Keeping this one may have removed some.
                entries = stillThere(std::move(entries), archive.of(tree->rootPath));
            }
            outcome.entries = std::move(entries);
            return outcome;
        },
        [this](Outcome outcome) { take(std::move(outcome)); });
    Q_EMIT changed();
}

void CompareFlow::compareWith(const ScanArchive::Entry& entry) {
    tree_ = scan_.tree();
    job_.run(
        [archive = ScanArchive(environment_.scansFolder), entry, isKeptHere = isKeptHere(entry), tree = tree_,
         home = environment_.home, isNeeded = isNeeded()] {
            auto kept = isKeptHere ? readIn(archive, entry) : KeptScanFlow::read(entry.path, home);
            if (!kept)
                return Outcome{.failure = kept.error()};
            const auto since = kept->origin.measuredAt;
            std::optional<Entry> file;
            if (!isKeptHere)
                file = {.path = entry.path,
                        .header = {.origin = kept->origin,
                                   .root = kept->tree.rootPath,
                                   .entries = kept->tree.count(),
                                   .allocatedBytes = kept->tree.allocated(0)}};
            auto outcome =
                compare(std::make_shared<const FileTree>(std::move(kept->tree)), tree, since, home, isNeeded);
            outcome.file = std::move(file);
            return outcome;
        },
        [this](Outcome outcome) { take(std::move(outcome)); });
    Q_EMIT changed();
}

/// The tree has been edited.
void CompareFlow::compareAgain(Date since) {
    job_.run([before = compared_->before, tree = tree_, since,
              home = environment_.home] { return compare(before, tree, since, home, true); },
             [this](Outcome outcome) { take(std::move(outcome)); });
    Q_EMIT changed();
}

void CompareFlow::take(Outcome outcome) {
    if (outcome.failure.isEmpty()) {
        if (!outcome.content.failure.isEmpty())
            notice_.show(tr("This scan could not be kept: %1").arg(outcome.content.failure));
        if (outcome.entries)
            setEntries(*std::move(outcome.entries));
        if (outcome.file)
            addFile(*std::move(outcome.file));
        chosen_ = outcome.chosen;
        growth_.set(std::move(outcome.content), environment_.now());
        setCompared(isNeeded() ? std::move(outcome.compared) : nullptr);
    } else {
        notice_.show(tr("This scan could not be compared with: %1").arg(outcome.failure));
    }
    follow();
    // It was asked for while the answer was made.
    if (outcome.failure.isEmpty() && isNeeded() && !compared_ && !job_.isRunning())
        bringComparison();
    Q_EMIT changed();
}

void CompareFlow::clear() {
    job_.drop();
    growth_.clear();
    chosen_.reset();
    setEntries({});
    tree_.reset();
    setCompared(nullptr);
    Q_EMIT changed();
}

void CompareFlow::follow() {
    const auto& tree = scan_.tree();
    if (tree->count() == 0) {
        clear(); // another scan has begun
    } else if (tree_ && tree_ != tree && !job_.isRunning()) {
        growth_.follow(*tree_, *tree, PathCanonicalizer::shared());
        tree_ = tree;
        if (compared_ && chosen_)
            compareAgain(*chosen_);
    }
}

QStringList CompareFlow::scanTexts() const {
    QStringList words;
    for (const auto& entry : entries_)
        words << tr("%1 · %2").arg(
            isKeptHere(entry)
                ? dateText(std::chrono::time_point_cast<Date::duration>(dateOf(entry)), environment_.now())
                : textOf(lastPathComponent(entry.path)),
            ByteFigure(entry.header.allocatedBytes).text());
    return words;
}

bool CompareFlow::isKeptHere(const Entry& entry) const {
    return parentPath(entry.path) == environment_.scansFolder;
}

int CompareFlow::scan() const {
    const auto found =
        std::ranges::find(entries_, chosen_, [](const Entry& entry) { return std::optional(dateOf(entry)); });
    return found == entries_.end() ? -1 : static_cast<int>(found - entries_.begin());
}

void CompareFlow::setScan(int number) {
    if (number != scan() && number >= 0 && number < static_cast<int>(entries_.size()))
        compareWith(entries_[static_cast<std::size_t>(number)]);
}

void CompareFlow::openFile(const QUrl& file) {
    const auto path = pathOfFileUrl(file.toEncoded().toStdString());
    if (!path || !isPossible())
        return;
    // What runs may be about to tell which scans are kept.
    if (job_.isRunning())
        notice_.show(tr("A scan is compared when nothing else is."));
    else
        compareWith({.path = *path, .header = {}});
}

/// In the place of one of the same time: those of which it is not known are told apart by nothing else.
void CompareFlow::addFile(Entry file) {
    auto entries = entries_;
    std::erase_if(entries, [&](const Entry& entry) { return dateOf(entry) == dateOf(file); });
    entries.insert(entries.begin(), std::move(file));
    setEntries(std::move(entries));
}

void CompareFlow::bringComparison() {
    if (const int chosen = scan(); chosen >= 0)
        compareWith(entries_[static_cast<std::size_t>(chosen)]);
}

void CompareFlow::need(Need need, bool isNeeded) {
    const auto bit = 1U << static_cast<unsigned>(need);
    needs_ = isNeeded ? needs_ | bit : needs_ & ~bit;
    if (!CompareFlow::isNeeded())
        setCompared(nullptr);
    else if (!compared_ && !job_.isRunning())
        bringComparison();
}

void CompareFlow::setEntries(std::vector<Entry> entries) {
    entries_ = std::move(entries);
    Q_EMIT scansChanged();
}

void CompareFlow::setCompared(std::shared_ptr<const ComparedScans> compared) {
    if (compared == compared_)
        return;
    compared_ = std::move(compared);
    Q_EMIT comparedChanged();
}

} // namespace orbel
