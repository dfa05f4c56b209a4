#pragma once

#include "Models/ByteFigure.h"
#include "Models/GadgetListModel.h"
#include "Scan/KindTotals.h"
#include "Scan/VolumeInfo.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace orbel {

/// A part of a volume, as it stands in the bar. A plain value.
struct LedgerSegment {
    Q_GADGET
    Q_PROPERTY(int part MEMBER part)
    Q_PROPERTY(int kind MEMBER kind)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString size READ size)
    Q_PROPERTY(double fraction MEMBER fraction)

public:
    int part = 0;  ///< a DiskLedger::Part
    int kind = -1; ///< a ContentKind; -1 when `part` is no kind
    QString title;
    quint64 bytes = 0;
    double fraction = 0; ///< of the whole bar

    QString size() const { return ByteFigure(bytes).text(); }
    bool operator==(const LedgerSegment&) const = default;
};

/// A volume's bytes as a sum that adds up: measured + trash + notMeasured (or - shared) + writtenSince (or
/// - freedSince) + reserved + free = total. All figures are 0 while the volume is not known, and nothing is
/// measured before a scan of it is done.
class DiskLedger : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the AppModel.")
    Q_PROPERTY(bool known READ isKnown NOTIFY changed)
    /// A scan's figures are in it.
    Q_PROPERTY(bool measuredAny READ isMeasured NOTIFY changed)
    /// The mount point, and what is mounted there and how ("btrfs on / · /dev/nvme0n1p3").
    Q_PROPERTY(QString path READ path NOTIFY changed)
    Q_PROPERTY(QString description READ description NOTIFY changed)
    Q_PROPERTY(orbel::ByteFigure total READ total NOTIFY changed)
    Q_PROPERTY(orbel::ByteFigure free READ free NOTIFY changed)
    /// As the file system reports it.
    Q_PROPERTY(orbel::ByteFigure used READ used NOTIFY changed)
    /// Without what lies in the Trash, which is a term of its own.
    Q_PROPERTY(orbel::ByteFigure measured READ measured NOTIFY changed)
    Q_PROPERTY(orbel::ByteFigure trash READ trash NOTIFY changed)
    /// Used bytes that the scan did not see.
    Q_PROPERTY(orbel::ByteFigure notMeasured READ notMeasured NOTIFY changed)
    /// By how much more was measured than was used: files that share blocks count at each of them.
    Q_PROPERTY(orbel::ByteFigure shared READ shared NOTIFY changed)
    /// By how much the used bytes have grown since the scan, or shrunk, beside what is known of it.
    Q_PROPERTY(orbel::ByteFigure writtenSince READ writtenSince NOTIFY changed)
    Q_PROPERTY(orbel::ByteFigure freedSince READ freedSince NOTIFY changed)
    /// Kept by the file system: neither used nor free.
    Q_PROPERTY(orbel::ByteFigure reserved READ reserved NOTIFY changed)
    /// The parts in the order of the bar; their bytes add up to the whole.
    Q_PROPERTY(orbel::RoleList* segments READ segments CONSTANT)
    /// The whole sum in words, for a screen reader.
    Q_PROPERTY(QString summary READ summary NOTIFY changed)

public:
    /// What a part is: a kind of what was measured, or one of the rest.
    enum Part { Kind, Trash, NotMeasured, Reserved, Free };
    Q_ENUM(Part)

    struct Figures {
        QString path;
        QString description;
        std::optional<VolumeInfo> volume{};
        std::optional<KindTotals> measured{}; ///< without the Trash; absent: no scan yet
        std::uint64_t trash = 0;              ///< of the same moment as `volume`
        /// What was used but neither measured nor in the Trash when the scan was done; less than nothing
        /// where blocks are shared. Absent: as now.
        std::optional<std::int64_t> uncounted{};

        bool operator==(const Figures&) const = default;
    };

    using QObject::QObject;

    void setFigures(Figures figures);

    bool isKnown() const { return figures_.volume.has_value(); }
    bool isMeasured() const { return figures_.measured.has_value(); }
    QString path() const { return figures_.path; }
    QString description() const { return figures_.description; }
    ByteFigure total() const { return ByteFigure(volume().total); }
    ByteFigure free() const { return ByteFigure(volume().free); }
    ByteFigure used() const { return ByteFigure(volume().used); }
    ByteFigure measured() const { return ByteFigure(measuredBytes_); }
    ByteFigure trash() const { return ByteFigure(figures_.trash); }
    ByteFigure notMeasured() const { return above(uncounted_); }
    ByteFigure shared() const { return above(-uncounted_); }
    ByteFigure writtenSince() const { return above(since_); }
    ByteFigure freedSince() const { return above(-since_); }
    ByteFigure reserved() const { return ByteFigure(volume().otherVolumes()); }
    GadgetListModel<LedgerSegment>* segments() { return &segments_; }
    QString summary() const;

Q_SIGNALS:
    void changed();

private:
    VolumeInfo volume() const { return figures_.volume.value_or(VolumeInfo()); }
    /// The part of a difference that is not less than nothing.
    static ByteFigure above(std::int64_t bytes) {
        return ByteFigure(static_cast<quint64>(std::max<std::int64_t>(bytes, 0)));
    }
    void settle();
    void updateSegments();

    Figures figures_;
    quint64 measuredBytes_ = 0;
    std::int64_t uncounted_ = 0; ///< used - measured - trash, as it was when the scan was done
    std::int64_t since_ = 0;     ///< what that has changed by
    GadgetListModel<LedgerSegment> segments_;
};

} // namespace orbel
