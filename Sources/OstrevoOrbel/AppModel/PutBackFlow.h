#pragma once

#include "AppModel/Activity.h"
#include "AppModel/AppEnvironment.h"
#include "AppModel/LatestJob.h"
#include "Journal/PutBack.h"

#include <functional>
#include <memory>
#include <optional>
#include <QObject>
#include <QtQml/qqmlregistration.h>
#include <string>
#include <vector>

namespace orbel {

/// The one way in which the window puts something back, for all screens: one at a time, on a thread of its
/// own, and never beside a scan or a batch of moves. Used on the main thread.
class PutBackFlow final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the AppModel.")

    Q_PROPERTY(bool running READ isRunning NOTIFY changed)
    /// Nothing keeps a put back from beginning now.
    Q_PROPERTY(bool ready READ isReady NOTIFY changed)

    // What the last one came to, until it is closed.

    /// "Put back “lecture_03.mkv” to ~/Downloads"; empty when there is nothing to tell.
    Q_PROPERTY(QString putBackMessage READ putBackMessage NOTIFY changed)
    /// The same in two: what was done, and where to or why not.
    Q_PROPERTY(QString statement READ statement NOTIFY changed)
    Q_PROPERTY(QString explanation READ explanation NOTIFY changed)
    /// Not all that was asked for was done.
    Q_PROPERTY(bool failed READ isFailed NOTIFY changed)
    /// Something came back that can be shown.
    Q_PROPERTY(bool showable READ isShowable NOTIFY changed)

public:
    /// The arguments outlive this.
    PutBackFlow(const AppEnvironment& environment, const PutBack& service, Activity& activity);
    /// Stops after the item in progress, and waits for it.
    ~PutBackFlow() override { job_.stopAndWait(); }

    // Intents. While none can begin, each says so; while one runs, it is ignored.

    void putBackEntry(const std::string& entryID);
    void putBackSession(const std::string& sessionID);
    /// The newest session of which anything can be put back now; when nothing can, tells why not.
    Q_INVOKABLE void putBackLast();
    Q_INVOKABLE void stopAfterThisItem() { job_.stop(); }
    Q_INVOKABLE void closeMessage();
    /// Shows what came back in the file manager.
    Q_INVOKABLE void showRestored();

    // State.

    bool isRunning() const { return job_.isRunning(); }
    bool isReady() const { return activity_.isIdle(); }
    QString putBackMessage() const;
    QString statement() const { return statement_; }
    QString explanation() const { return explanation_; }
    bool isFailed() const { return isFailed_; }
    bool isShowable() const { return restoredPath_.has_value(); }

Q_SIGNALS:
    void changed();
    /// What was at these paths is back there.
    void restored(const std::vector<std::string>& paths);
    void finished(const std::string& sessionID, const std::vector<orbel::PutBackResult>& results);

private:
    using Outcome = PutBackSession; ///< of a single entry, without the session's id

    void start(std::function<Outcome(const PutBack&, const ScanCancellation&)> work);
    void take(const Outcome& outcome);
    void tell(const std::vector<PutBackResult>& results);

    const AppEnvironment& environment_;
    const PutBack& service_;
    Activity& activity_;
    QString statement_;
    QString explanation_;
    bool isFailed_ = false;
    std::optional<std::string> restoredPath_;
    LatestJob job_{"orbel.put-back"};
};

} // namespace orbel
