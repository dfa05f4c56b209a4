#pragma once

#include "AppModel/LatestJob.h"
#include "AppModel/Notice.h"
#include "AppModel/PutBackFlow.h"
#include "AppModel/ScanFlow.h"
#include "AppModel/ShownScreen.h"
#include "Delete/DeletionSession.h"
#include "Models/MoveItemsModel.h"
#include "Models/MoveReport.h"
#include "Models/Ticks.h"

#include <functional>
#include <optional>
#include <QObject>
#include <QPointer>
#include <QtQml/qqmlregistration.h>
#include <QUrl>
#include <string>
#include <vector>

namespace orbel {

/// The way from ticks to the Trash: a confirmation, a batch of moves, its report. Belongs to the AppModel;
/// used on the main thread, while each batch runs on a thread of its own.
///
/// What moves is what the confirmation showed: it keeps its own copy of the items, and no tick that changes
/// afterwards changes it. There is one confirmation and one batch at a time.
class MoveFlow final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the AppModel.")

    // The confirmation, and then the batch.

    /// A confirmation is asked for.
    Q_PROPERTY(bool confirming READ isConfirming NOTIFY changed)
    /// A batch runs.
    Q_PROPERTY(bool deleting READ isDeleting NOTIFY deletingChanged)
    /// Of the confirmation, and of the batch after it.
    Q_PROPERTY(orbel::RoleList* items READ items CONSTANT)
    /// "Move 3 items to the Trash?"
    Q_PROPERTY(QString question READ question NOTIFY changed)
    /// "3 items, 26.7 GB on disk"
    Q_PROPERTY(QString sum READ sum NOTIFY changed)
    /// "Frees 20.8 GB – 26.7 GB"
    Q_PROPERTY(QString frees READ frees NOTIFY changed)
    /// "Move 3 items (26.7 GB) to Trash"
    Q_PROPERTY(QString commitText READ commitText NOTIFY changed)
    /// "Moving to the Trash: 2 of 3"
    Q_PROPERTY(QString progressText READ progressText NOTIFY changed)
    /// The title of the item that is being checked and moved; empty when there is none.
    Q_PROPERTY(QString deletingTitle READ deletingTitle NOTIFY changed)
    /// How many items have been dealt with.
    Q_PROPERTY(int doneCount READ doneCount NOTIFY changed)
    /// Told to stop, and still busy with the item in progress.
    Q_PROPERTY(bool stopping READ isStopping NOTIFY changed)

    // The report.

    /// A batch has ended and its report is not yet closed.
    Q_PROPERTY(bool reporting READ isReporting NOTIFY changed)
    Q_PROPERTY(orbel::MoveReport* report READ report CONSTANT)
    Q_PROPERTY(bool puttingBack READ isPuttingBack NOTIFY changed)

public:
    /// What the user is asked to approve.
    struct ConfirmRequest {
        std::string id; ///< a fresh UUID
        std::vector<TickedItem> items;
    };

    /// The arguments outlive this.
    MoveFlow(const AppEnvironment& environment, DeletionSession& session, const ScanFlow& scan,
             PutBackFlow& putBack, const ShownScreen& shown, Activity& activity, Notice& notice);
    /// Stops a batch after the item in progress, and waits for it.
    ~MoveFlow() override { batch_.stopAndWait(); }

    /// Has these ticks cleared after every move, and whenever a scan begins or one from elsewhere is shown.
    void watch(Ticks& ticks);

    /// Unticks what is at this path or inside it, on every screen.
    void untickInside(const std::string& path);
    /// The same for what holds it, too.
    void untickAround(const std::string& path);
    /// Unticks what is not in this tree of a new scan as it was when it was ticked.
    void untickChanged(const FileTree& tree);

    // Intents.

    /// Asks for a confirmation of what is ticked. Says so where nothing is, while a scan or a put back runs,
    /// and while what is shown was measured elsewhere. Ignored while one is asked for or a batch runs.
    Q_INVOKABLE void review(orbel::Ticks* ticks);
    /// The same for items that a screen has no ticks for.
    void ask(std::vector<TickedItem> items);
    Q_INVOKABLE void cancel();
    /// Moves what the confirmation shows.
    Q_INVOKABLE void confirm();
    Q_INVOKABLE void stopAfterThisItem();
    Q_INVOKABLE void closeReport();
    Q_INVOKABLE void putBackAll();
    /// As JSON when the file's name ends in ".json", else as Markdown.
    Q_INVOKABLE void exportReport(const QUrl& file);

    // State.

    const std::optional<ConfirmRequest>& confirmRequest() const { return request_; }
    const std::optional<DeletionReport>& lastReport() const { return lastReport_; }
    bool isConfirming() const { return request_.has_value(); }
    bool isDeleting() const { return batch_.isRunning(); }
    MoveItemsModel* items() { return &items_; }
    QString question() const;
    QString sum() const;
    QString frees() const;
    QString commitText() const;
    QString progressText() const;
    QString deletingTitle() const;
    int doneCount() const { return static_cast<int>(atWork_); }
    bool isStopping() const { return batch_.isStopping(); }
    bool isReporting() const { return isReporting_; }
    MoveReport* report() { return &report_; }
    bool isPuttingBack() const { return putBack_.isRunning(); }

Q_SIGNALS:
    void changed();
    void deletingChanged();
    /// What was at these paths was moved just now: lists drop their rows at once, before the edited
    /// tree is there.
    void moved(const std::vector<std::string>& paths);
    /// What was at these paths is back there, whichever way it was put back.
    void restored(const std::vector<std::string>& paths);
    /// A batch has ended and its report is there.
    void finished();

private:
    void clearTicks();
    void untick(const std::function<bool(const DeletionItem& item)>& isMeant);
    class Steps;

    void takeSteps(Steps& steps);
    void takeReport(DeletionReport report);
    void takePutBack(const std::string& sessionID, const std::vector<PutBackResult>& results);

    const AppEnvironment& environment_;
    DeletionSession& session_;
    const ScanFlow& scan_;
    PutBackFlow& putBack_;
    const ShownScreen& shown_;
    Activity& activity_;
    Notice& notice_;
    std::vector<QPointer<Ticks>> watched_;
    std::optional<ConfirmRequest> request_;
    MoveItemsModel items_;
    std::size_t atWork_ = 0; ///< the row of the item in progress
    QString origin_;
    std::optional<DeletionReport> lastReport_;
    MoveReport report_;
    bool isReporting_ = false;
    LatestJob batch_{"orbel.deletion"};
};

} // namespace orbel
