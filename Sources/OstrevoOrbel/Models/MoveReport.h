#pragma once

#include "Delete/DeletionReport.h"
#include "Journal/PutBack.h"
#include "Models/GadgetListModel.h"
#include "Models/TickedItem.h"

#include <chrono>
#include <QObject>
#include <QtQml/qqmlregistration.h>
#include <string>
#include <unordered_map>
#include <vector>

namespace orbel {

/// An item of a report. A plain value.
struct ReportItem {
    Q_GADGET
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString path MEMBER path)
    Q_PROPERTY(int kind MEMBER kind)
    Q_PROPERTY(QString size MEMBER size)
    Q_PROPERTY(QString note MEMBER note)
    Q_PROPERTY(QString stage MEMBER stage)

public:
    QString title;
    QString path; ///< for people: "~" in place of the home
    int kind = 0;
    QString size;  ///< empty for what was skipped
    QString note;  ///< why it was skipped, a warning, or why it could not be put back
    QString stage; ///< "moved", "putBack", "notPutBack" or "skipped"

    bool operator==(const ReportItem&) const = default;
};

/// What the last batch did, as the report's screen binds to it.
class MoveReport : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the MoveFlow.")
    /// "Large and Old · today at 09:26"
    Q_PROPERTY(QString scope READ scope NOTIFY changed)
    /// "Moved to Trash: 20.8 GB (measured just now)."; once something was put back, "Put back 2 of 3 items."
    Q_PROPERTY(QString headline READ headline NOTIFY changed)
    /// Something was to be put back and is not.
    Q_PROPERTY(bool putBackFailed READ isPutBackFailed NOTIFY changed)
    /// What follows from that, in a sentence.
    Q_PROPERTY(QString note READ note NOTIFY changed)
    /// "Moved to Trash (3)", "Put back (3)"
    Q_PROPERTY(QString movedTitle READ movedTitle NOTIFY changed)
    /// Why the batch ended before all of it was dealt with, worst first; empty when it did not.
    Q_PROPERTY(QStringList stops READ stops NOTIFY changed)
    /// The batch stopped because what is recorded may not be true.
    Q_PROPERTY(bool untrustworthy READ isUntrustworthy NOTIFY changed)
    Q_PROPERTY(orbel::RoleList* moved READ moved CONSTANT)
    Q_PROPERTY(orbel::RoleList* skipped READ skipped CONSTANT)
    Q_PROPERTY(QString movedSize READ movedSize NOTIFY changed)
    /// "Could not check 14 system processes for open files."; empty when all could be.
    Q_PROPERTY(QString unchecked READ unchecked NOTIFY changed)
    /// "Session 09:26:11 – 09:26:13"
    Q_PROPERTY(QString times READ times NOTIFY changed)
    /// Something of it is still in the Trash, as far as this report knows.
    Q_PROPERTY(bool canPutBack READ canPutBack NOTIFY changed)

public:
    explicit MoveReport(QObject* parent = nullptr);

    /// `items`: those that were approved. `origin`: the screen that it began on.
    void set(DeletionReport report, const std::vector<TickedItem>& items, const QString& origin,
             std::string home, std::chrono::system_clock::time_point now);
    void takePutBack(const std::vector<PutBackResult>& results);
    const DeletionReport& report() const { return report_; }

    QString scope() const { return scope_; }
    QString headline() const;
    QString note() const;
    QString movedTitle() const;
    QStringList stops() const;
    bool isUntrustworthy() const { return report_.stoppedForMismatch || report_.journalFailed; }
    GadgetListModel<ReportItem>* moved() { return &moved_; }
    GadgetListModel<ReportItem>* skipped() { return &skipped_; }
    QString movedSize() const;
    QString unchecked() const;
    QString times() const;
    bool canPutBack() const;
    bool isPutBackFailed() const { return !putBackOf_.empty() && canPutBack(); }

Q_SIGNALS:
    void changed();

private:
    void showMoved();
    /// How many of the moved items are back.
    std::size_t restored() const;

    DeletionReport report_;
    std::string home_;
    std::unordered_map<std::string, int> kindOf_;              ///< by path
    std::unordered_map<std::string, PutBackResult> putBackOf_; ///< by path
    QString scope_;
    GadgetListModel<ReportItem> moved_;
    GadgetListModel<ReportItem> skipped_;
};

} // namespace orbel
