#include "AppModel/JournalFlow.h"

#include "AppModel/AppModel.h"
#include "AppModel/MoveFlow.h"
#include "AppModel/PutBackFlow.h"
#include "Export/ReportRenderer.h"
#include "Models/Wording.h"
#include "Util/FileUrl.h"
#include "Util/PathText.h"
#include "Util/ReplaceFile.h"

#include <algorithm>

namespace orbel {

namespace {

/// What of the journal has these words in a title or a path as it is shown.
JournalModel::Matches matchesIn(const JournalHistory& history, const QString& words,
                                const std::string& home) {
    JournalModel::Matches matches;
    for (std::uint32_t session = 0; session < history.sessions().size(); ++session) {
        const auto& items = history.sessions()[session].items;
        std::vector<std::uint32_t> found;
        for (std::uint32_t item = 0; item < items.size(); ++item) {
            const auto& entry = history.entry(items[item].line);
            if (textOf(entry.title).contains(words, Qt::CaseInsensitive)
                || textOf(tildePath(entry.originalPath, home)).contains(words, Qt::CaseInsensitive)
                || textOf(entry.originalPath).contains(words, Qt::CaseInsensitive))
                found.push_back(item);
        }
        if (!found.empty())
            matches.emplace_back(session, std::move(found));
    }
    return matches;
}

} // namespace

JournalFlow::JournalFlow(AppModel& app) : app_(app), history_(app.journalHistory()) {
    list_.setAsking([this](Line line) { askLine(line); },
                    [this](std::size_t session) { askSession(session); });
    connect(&app, &AppModel::journalEntriesChanged, this, &JournalFlow::takeHistory);
    connect(&list_, &JournalModel::rowsChanged, this, &JournalFlow::changed);
}

// What is shown.

void JournalFlow::refresh() {
    if (app_.moves()->isDeleting() || app_.putBack()->isRunning())
        return;
    app_.loadJournal();
}

void JournalFlow::takeHistory() {
    ++searchJob_;
    if (search_.isEmpty()) {
        history_ = app_.journalHistory();
        list_.setHistory(history_, std::nullopt, app_.home(), app_.now());
        look();
        Q_EMIT changed();
        return;
    }
    inbox_.runAside(
        "orbel.journal-search",
        [history = app_.journalHistory(), words = search_, home = app_.home()] {
            return matchesIn(*history, words, home);
        },
        [this, job = searchJob_, history = app_.journalHistory()](JournalModel::Matches matches) {
            if (job != searchJob_)
                return;
            history_ = history;
            list_.setHistory(history_, std::move(matches), app_.home(), app_.now());
            look();
            Q_EMIT changed();
        });
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

/// The queues are of the history before.
void JournalFlow::look() {
    inSight_.clear();
    wholeSessions_.clear();
    list_.distrust();
}

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
    if (isAsking_ || isAskingPlanned_)
        return;
    isAskingPlanned_ = true;
    inbox_.address().send([this] {
        isAskingPlanned_ = false;
        auto lines = nextLines();
        if (lines.empty())
            return;
        isAsking_ = true;
        using Outlooks = std::vector<std::pair<Line, PutBackOutlook>>;
        inbox_.runAside(
            "orbel.journal-look",
            [history = history_, lines = std::move(lines), service = app_.putBackService()] {
                Outlooks outlooks;
                for (const auto line : lines)
                    outlooks.emplace_back(line, service.outlook(history->entry(line)));
                return outlooks;
            },
            [this, history = history_](const Outlooks& outlooks) {
                isAsking_ = false;
                if (history == history_)
                    list_.setOutlooks(outlooks);
                askNext();
            });
    });
}

// The intents of a row.

void JournalFlow::putBack(int row) {
    if (!list_.isPossibleAt(row))
        return;
    if (const auto* const entry = list_.entryAt(row))
        app_.putBack()->putBackEntry(entry->id);
    else
        app_.putBack()->putBackSession(std::string(list_.sessionAt(row).id));
}

void JournalFlow::exportJournal(const QUrl& file) {
    const auto path = pathOfFileUrl(file.toEncoded().toStdString());
    if (!path)
        return;
    inbox_.runAside(
        "orbel.journal-export",
        [history = app_.journalHistory(), path = *path] {
            const auto& entries = history->entries();
            const auto text = path.ends_with(".json") ? ReportRenderer::json(entries) + "\n"
                                                      : ReportRenderer::markdown(entries);
            return replaceFile(path, text).has_value();
        },
        [this, path = *path](bool isWritten) {
            if (!isWritten)
                app_.tell(tr("The journal could not be written to %1.").arg(textOf(path)));
        });
}

// State.

QString JournalFlow::countText() const {
    if (!app_.isJournalRead() || !failure().isEmpty())
        return {};
    return orbel::countText(app_.journalHistory()->sessions().size());
}

QString JournalFlow::summary() const {
    if (countText().isEmpty())
        return {};
    return countOf(app_.journalHistory()->sessions().size(), tr("session"), tr("sessions"));
}

bool JournalFlow::isBusy() const {
    return !app_.isJournalRead() || isAsking_ || isAskingPlanned_;
}

QString JournalFlow::state() const {
    if (!app_.isJournalRead())
        return QStringLiteral("loading");
    if (!failure().isEmpty())
        return QStringLiteral("failed");
    if (app_.journalHistory()->sessions().empty())
        return QStringLiteral("empty");
    return list_.rowCount() == 0 ? QStringLiteral("noMatch") : QStringLiteral("filled");
}

QString JournalFlow::failure() const {
    return app_.journalFailure();
}

QString JournalFlow::status() const {
    if (state() != QLatin1String("filled"))
        return {};
    const auto items = countOf(app_.journalHistory()->itemCount(), tr("item"), tr("items"));
    return tr("%1 · %2").arg(summary(), items);
}

} // namespace orbel
