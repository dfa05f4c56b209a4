#pragma once

#include "AppModel/Activity.h"
#include "AppModel/AppEnvironment.h"
#include "AppModel/LatestJob.h"
#include "AppModel/ScanOutcome.h"
#include "Models/DiskLedger.h"
#include "Models/VolumesModel.h"

#include <QFileSystemWatcher>
#include <QObject>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

namespace orbel {

/// The disk as it is now, set against what was measured of it: the volumes, the Trash, the ledgers. Used on
/// the main thread, while what may have to wait for the disk is read on threads of its own.
class DiskState final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the AppModel.")
    /// The volume of the user's data, and the one that was measured last (the same unless
    /// another was chosen).
    Q_PROPERTY(orbel::DiskLedger* ownLedger READ ownLedger CONSTANT)
    Q_PROPERTY(orbel::DiskLedger* ledger READ ledger CONSTANT)
    /// "5.8 GB", or "—" when it is not known.
    Q_PROPERTY(QString trashSize READ trashSizeText NOTIFY trashBytesChanged)
    /// Those that can be measured.
    Q_PROPERTY(orbel::RoleList* volumes READ volumes CONSTANT)

public:
    /// The arguments outlive this.
    DiskState(const AppEnvironment& environment, const Activity& activity);

    // Intents.

    Q_INVOKABLE void refreshVolume();
    Q_INVOKABLE void refreshVolumes();
    Q_INVOKABLE void openTrash();

    // What a scan and the edits after it tell.

    /// A scan of this path begins: nothing is counted. `elsewhere` names the disk of a scan that was made on
    /// another one: its volume is the one that the scan counted at, and nothing here is asked about it.
    void beginCounting(const std::string& root, const std::optional<QString>& elsewhere = {});
    /// What the scan counted; after that, what each edit of its tree comes to.
    void takeCounted(const ScanOutcome& outcome);
    /// The used bytes of that moment without those that were moved to the Trash since the scan: these are in
    /// no tree, but known.
    std::uint64_t usedWithoutMoved(const VolumeInfo& disk, const DiskMoment& moment) const;
    /// An edit is under way that brings a moment of its own, which fits the tree that it makes.
    void setMomentExpected(bool expected) { isMomentExpected_ = expected; }

    // State.

    const std::optional<VolumeInfo>& volume() const { return volume_; }
    std::optional<std::uint64_t> trashBytes() const { return trashBytes_; }
    DiskReader reader() const { return DiskReader(environment_); }
    DiskLedger* ownLedger() { return &ownLedger_; }
    DiskLedger* ledger() { return &ledger_; }
    QString trashSizeText() const {
        return trashBytes_ ? ByteFigure(*trashBytes_).text() : QStringLiteral("—");
    }
    VolumesModel* volumes() { return &volumes_; }

Q_SIGNALS:
    void volumeChanged();
    void trashBytesChanged();

private:
    /// What a scan and the edits since have counted.
    struct Counted {
        KindTotals kinds{};
        KindTotals trashedKinds{}; ///< the part of it that lies in the Trash
        DiskMoment atScan;
        std::uint64_t bytesAtScan = 0;      ///< without the Trash
        std::int64_t outsideTreeAtScan = 0; ///< see outsideTree()

        std::uint64_t bytes() const; ///< without the Trash
        /// By how much the Trash is larger than the tree has it.
        std::int64_t outsideTree(const DiskMoment& moment) const;
    };

    void watchTrash();
    void takeTrashChange();
    void takeMoment(const DiskMoment& moment);
    void updateLedgers();
    void addCounted(DiskLedger::Figures& figures, bool holdsTrash) const;

    const AppEnvironment& environment_;
    const Activity& activity_;
    std::string root_; ///< what is or was measured last here
    std::optional<QString> elsewhere_;
    std::optional<VolumeInfo> volume_;
    std::optional<VolumeInfo> ledgerVolume_; ///< of the disk, read at one moment with `trashBytes_`
    std::optional<VolumeInfo> scannedVolume_;
    std::optional<std::uint64_t> trashBytes_;
    std::uint64_t momentNumber_ = 0;
    bool isMomentExpected_ = false;
    std::optional<Counted> counted_; ///< absent before the first scan and while one runs
    std::vector<platform::Mount> mounts_;
    DiskLedger ownLedger_;
    DiskLedger ledger_;
    VolumesModel volumes_;
    QFileSystemWatcher trashWatch_;
    QTimer trashTimer_; ///< many changes at once are one
    LatestJob momentJob_{"orbel.trash-size"};
    LatestJob volumesJob_{"orbel.volumes"};
};

} // namespace orbel
