#include "AppModel/JournalFlow.h"

#include "Export/ReportRenderer.h"
#include "Journal/IntentSettling.h"
#include "Models/FreedAside.h"
#include "Models/Wording.h"
#include "Platform/ReplaceFile.h"
#include "Util/FileUrl.h"
#include "Util/PathText.h"
#include "Util/TextMatcher.h"

#include <algorithm>
#include <QTimer>

namespace orbel {

namespace {

/// What of the journal has these words in a title or a path as it is shown.
JournalModel::Matches matchesIn(const JournalHistory& history, const QString& words,
                                const std::string& home) {
    const TextMatcher matcher(words.toStdString());
    JournalModel::Matches matches;
    for (std::uint32_t session = 0; session < history.sessions().size(); ++session) {
        const auto& items = history.sessions()[session].items;
        std::vector<std::uint32_t> found;
        for (std::uint32_t item = 0; item < items.size(); ++item) {
            const auto& entry = history.entry(items[item].line);
            if (matcher.isIn(entry.title) || matcher.isInPath(entry.originalPath, home)
                || matcher.isIn(entry.originalPath))
                found.push_back(item);
        }
        if (!found.empty())
            matches.emplace_back(session, std::move(found));
    }
    return matches;
}

} // namespace

JournalFlow::JournalFlow(const AppEnvironment& environment, std::shared_ptr<JournalStore> journal,
                         bool maySettle, const PutBack& service, PutBackFlow& putBack,
                         const Activity& activity, Notice& notice)
    : environment_(environment),
      journal_(std::move(journal)),
      maySettle_(maySettle),
      service_(service),
      putBack_(putBack),
      activity_(activity),
      notice_(notice),
      latest_(std::make_shared<JournalHistory>()),
      history_(latest_) {
    list_.setAsking([this](Line line) { askLine(line); },
                    [this](std::size_t session) { askSession(session); });
    connect(&list_, &JournalModel::rowsChanged, this, &JournalFlow::changed);
    load();
}

// What is shown.

void JournalFlow::refresh() {
    if (!activity_.isMoving())
        load();
}

void JournalFlow::load() {
    // What a reading tells is not to be dropped: a newer one waits for it.
    isLoadWanted_ = loading_.isRunning();
    if (isLoadWanted_)
        return;
    loading_.run(
        [journal = journal_, maySettle = maySettle_, known = latest_, knownStamp = stamp_] {
            Loaded loaded;
            if (maySettle) {
                const auto settlement = settleIntents(*journal);
                QStringList words;
                for (const auto& doubt : settlement.doubts)
                    words << textOf(doubt.words);
                for (const auto& failure : settlement.failures)
                    words << textOf(failure);
                loaded.notice = words.join(QLatin1Char('\n'));
            }
            // Lines are only ever added, so a file of the same length holds the same lines.
            loaded.stamp = FileStamp::of(journal->path());
            if (loaded.stamp && loaded.stamp == knownStamp) {
                loaded.history = known;
                return loaded;
            }
            auto entries = journal->read();
            if (!entries) {
                loaded.failure = textOf(entries.error().words);
                loaded.stamp.reset();
            }
            constexpr std::size_t quicklyFreed = 1'000;
            const bool isLong = entries && entries->size() > quicklyFreed;
            loaded.history = freedAside(std::make_unique<const JournalHistory>(
                                            entries ? *std::move(entries) : std::vector<JournalEntry>()),
                                        isLong);
            return loaded;
        },
        [this](Loaded loaded) { takeLoaded(std::move(loaded)); });
}

void JournalFlow::takeLoaded(Loaded loaded) {
    if (!loaded.notice.isEmpty())
        notice_.show(loaded.notice);
    if (!loaded.failure.isEmpty() && loaded.failure != failure_)
        notice_.show(loaded.failure);
    if (loaded.failure.isEmpty() && !failure_.isEmpty() && notice_.text() == failure_)
        notice_.dismiss();
    failure_ = loaded.failure;
    stamp_ = loaded.stamp;
    latest_ = std::move(loaded.history);
    isRead_ = true;
    takeHistory();
    if (isLoadWanted_)
        load();
}

void JournalFlow::takeHistory() {
    if (search_.isEmpty()) {
        searching_.drop();
        showHistory(std::nullopt);
        return;
    }
    searching_.run([history = latest_, words = search_,
                    home = environment_.home] { return matchesIn(*history, words, home); },
                   [this](JournalModel::Matches matches) { showHistory(std::move(matches)); });
}

void JournalFlow::showHistory(std::optional<JournalModel::Matches> matches) {
    history_ = latest_;
    list_.setHistory(history_, std::move(matches), environment_.home, environment_.now());
    // The queues, and what is being asked, are of the history before.
    asking_.drop();
    inSight_.clear();
    wholeSessions_.clear();
    list_.distrust();
    Q_EMIT changed();
}

void JournalFlow::setSearch(const QString& words) {
    if (words == search_)
        return;
    search_ = words;
    Q_EMIT searchChanged();
    takeHistory();
}

void JournalFlow::setFolded(int row, bool folded) {
    list_.setFolded(row, folded);
}

// Where the items are.

void JournalFlow::askLine(Line line) {
    // A row asks once for each thing that it says.
    if (std::ranges::find(inSight_, line) == inSight_.end())
        inSight_.push_front(line);
    askNext();
}

void JournalFlow::askSession(std::size_t session) {
    wholeSessions_.emplace_back(session, 0);
    askNext();
}

std::vector<JournalFlow::Line> JournalFlow::nextLines() {
    constexpr std::size_t mostAtATime = 256;
    std::vector<Line> lines;
    const auto add = [&](Line line) {
        if (!list_.isTrusted(line) && std::ranges::find(lines, line) == lines.end())
            lines.push_back(line);
    };
    for (; !inSight_.empty() && lines.size() < mostAtATime; inSight_.pop_front())
        add(inSight_.front());
    while (!wholeSessions_.empty() && lines.size() < mostAtATime) {
        auto& [session, next] = wholeSessions_.front();
        const auto& items = history_->sessions()[session].items;
        for (; next < items.size() && lines.size() < mostAtATime; ++next) {
            const auto& item = items[next];
            if (!item.restored && history_->entry(item.line).result == JournalEntry::Result::trashed)
                add(item.line);
        }
        if (next == items.size())
            wholeSessions_.pop_front();
    }
    return lines;
}

/// One thread at a time, and not before all rows that are being drawn have asked.
void JournalFlow::askNext() {
    if (asking_.isRunning() || isAskingPlanned_)
        return;
    isAskingPlanned_ = true;
    QTimer::singleShot(0, this, [this] {
        isAskingPlanned_ = false;
        auto lines = nextLines();
        if (lines.empty() || asking_.isRunning())
            return;
        using Outlooks = std::vector<std::pair<Line, PutBackOutlook>>;
        asking_.run(
            [history = history_, lines = std::move(lines), service = service_](const LatestJob::Run& run) {
                Outlooks outlooks;
                for (const auto line : lines) {
                    if (run.isCancelled())
                        break;
                    outlooks.emplace_back(line, service.outlook(history->entry(line)));
                }
                return outlooks;
            },
            [this](const Outlooks& outlooks) {
                list_.setOutlooks(outlooks);
                askNext();
            });
    });
}

// The intents of a row.

void JournalFlow::putBack(int row) {
    if (!list_.isPossibleAt(row)) {
        notice_.show(tr("This cannot be put back now. Its row says what became of it."));
        return;
    }
    if (const auto* const entry = list_.entryAt(row))
        putBack_.putBackEntry(entry->id);
    else
        putBack_.putBackSession(std::string(list_.sessionAt(row).id));
}

void JournalFlow::exportJournal(const QUrl& file) {
    const auto path = pathOfFileUrl(file.toEncoded().toStdString());
    if (!path)
        return;
    exporting_.add(
        [history = latest_, path = *path] {
            const auto& entries = history->entries();
            const auto text = path.ends_with(".json") ? ReportRenderer::json(entries) + "\n"
                                                      : ReportRenderer::markdown(entries);
            return replaceFile(path, text).has_value();
        },
        [this, path = *path](bool isWritten) {
            if (!isWritten)
                notice_.show(tr("The journal could not be written to %1.").arg(textOf(path)));
        });
}

// State.

QString JournalFlow::countText() const {
    if (!isRead_ || !failure_.isEmpty())
        return {};
    return orbel::countText(latest_->sessions().size());
}

QString JournalFlow::summary() const {
    if (countText().isEmpty())
        return {};
    return countOf(latest_->sessions().size(), tr("session"), tr("sessions"));
}

bool JournalFlow::isBusy() const {
    return !isRead_ || asking_.isRunning() || isAskingPlanned_;
}

QString JournalFlow::state() const {
    if (!isRead_)
        return QStringLiteral("loading");
    if (!failure_.isEmpty())
        return QStringLiteral("failed");
    if (latest_->sessions().empty())
        return QStringLiteral("empty");
    return list_.rowCount() == 0 ? QStringLiteral("noMatch") : QStringLiteral("filled");
}

QString JournalFlow::path() const {
    return textOf(tildePath(journal_->path(), environment_.home));
}

QString JournalFlow::status() const {
    if (state() != QLatin1String("filled"))
        return {};
    const auto items = countOf(latest_->itemCount(), tr("item"), tr("items"));
    return tr("%1 · %2").arg(summary(), items);
}

} // namespace orbel
