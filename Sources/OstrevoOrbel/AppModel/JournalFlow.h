#pragma once

#include "AppModel/LatestJob.h"
#include "AppModel/Notice.h"
#include "AppModel/PutBackFlow.h"
#include "Models/JournalModel.h"
#include "Safety/FileStamp.h"

#include <deque>
#include <memory>
#include <optional>
#include <QObject>
#include <QtQml/qqmlregistration.h>
#include <QUrl>
#include <utility>
#include <vector>

namespace orbel {

/// The journal by sessions, and what has become of each item. Belongs to the AppModel; used on the main
/// thread. The journal is read, searched and exported, and the disk asked where the items are, on threads of
/// their own; of a long journal, only what is in sight is asked about.
class JournalFlow final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the AppModel.")
    /// "7"; empty until known.
    Q_PROPERTY(QString countText READ countText NOTIFY changed)
    /// "7 sessions"; empty until known.
    Q_PROPERTY(QString summary READ summary NOTIFY changed)

    Q_PROPERTY(orbel::JournalModel* list READ list CONSTANT)
    /// "loading", "failed", "empty", "noMatch" or "filled".
    Q_PROPERTY(QString state READ state NOTIFY changed)
    /// Why the journal cannot be shown, in the words of the error.
    Q_PROPERTY(QString failure READ failure NOTIFY changed)
    /// "3 sessions · 9 items"
    Q_PROPERTY(QString status READ status NOTIFY changed)
    /// What is looked for in titles and paths; empty for everything.
    Q_PROPERTY(QString search READ search WRITE setSearch NOTIFY searchChanged)
    /// Of the file, for people.
    Q_PROPERTY(QString path READ path CONSTANT)

public:
    /// Begins to read the journal. `maySettle`: what an earlier process could not write may be written. The
    /// references outlive this.
    JournalFlow(const AppEnvironment& environment, std::shared_ptr<JournalStore> journal, bool maySettle,
                const PutBack& service, PutBackFlow& putBack, const Activity& activity, Notice& notice);

    // Intents.

    /// Reads the journal again, and asks the disk again about what is in sight. Ignored while something
    /// moves to the Trash or back, after which this happens anyway.
    Q_INVOKABLE void refresh();
    /// Settles what an earlier process could not write, and reads the journal again, after a reading that
    /// is under way.
    void load();
    Q_INVOKABLE void showFile() { environment_.desktop->showInFileManager(journal_->path()); }
    void setSearch(const QString& words);
    Q_INVOKABLE void setFolded(int row, bool folded);
    /// Puts back the item of the row; of a head, all of the session that can be put back.
    Q_INVOKABLE void putBack(int row);
    /// As JSON when the file's name ends in ".json", else as Markdown.
    Q_INVOKABLE void exportJournal(const QUrl& file);

    // State.

    QString countText() const;
    QString summary() const;
    JournalModel* list() { return &list_; }
    QString state() const;
    QString failure() const { return failure_; }
    QString status() const;
    QString search() const { return search_; }
    QString path() const;
    const std::vector<JournalEntry>& journalEntries() const { return latest_->entries(); }
    /// The journal is being read, or the disk asked about what is in it.
    bool isBusy() const;

Q_SIGNALS:
    void changed();
    void searchChanged();

private:
    using Line = JournalHistory::Line;

    /// What one reading gives.
    struct Loaded {
        std::shared_ptr<const JournalHistory> history;
        std::optional<FileStamp> stamp;
        QString failure;
        QString notice;
    };

    void takeLoaded(Loaded loaded);
    void takeHistory();
    void showHistory(std::optional<JournalModel::Matches> matches);
    void look();
    void askLine(Line line);
    void askSession(std::size_t session);
    void askNext();
    std::vector<Line> nextLines();

    const AppEnvironment& environment_;
    std::shared_ptr<JournalStore> journal_;
    const bool maySettle_;
    const PutBack& service_;
    PutBackFlow& putBack_;
    const Activity& activity_;
    Notice& notice_;

    /// As it was read last; never null, empty until then and while the journal cannot be read.
    std::shared_ptr<const JournalHistory> latest_;
    std::optional<FileStamp> stamp_; ///< of the file when it was read
    QString failure_;
    bool isRead_ = false; ///< or could not be
    bool isLoadWanted_ = false;

    JournalModel list_;
    QString search_;
    std::shared_ptr<const JournalHistory> history_; ///< the one that the rows are of
    std::deque<Line> inSight_;                      ///< asked about next, the latest first
    /// Sessions that are asked about as a whole after that, each from this item on.
    std::deque<std::pair<std::size_t, std::size_t>> wholeSessions_;
    bool isAskingPlanned_ = false;
    LatestJob loading_{"orbel.journal"};
    LatestJob searching_{"orbel.journal-search"};
    LatestJob asking_{"orbel.journal-look"};
    LatestJob exporting_{"orbel.journal-export"};
};

} // namespace orbel
