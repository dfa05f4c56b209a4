#pragma once

#include "Models/ByteFigure.h"
#include "Models/SegmentsModel.h"
#include "Scan/KindTotals.h"
#include "Scan/VolumeInfo.h"

#include <optional>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace orbel {

/// A volume's bytes as a sum that adds up: measured + notMeasured (or - shared) + reserved + free = total.
/// All figures are 0 while the volume is not known, and nothing is measured before a scan of it is done.
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
    Q_PROPERTY(orbel::ByteFigure measured READ measured NOTIFY changed)
    /// Used bytes that no scan has seen.
    Q_PROPERTY(orbel::ByteFigure notMeasured READ notMeasured NOTIFY changed)
    /// By how much more was measured than is used: files that share blocks count at each of them.
    Q_PROPERTY(orbel::ByteFigure shared READ shared NOTIFY changed)
    /// Kept by the file system: neither used nor free.
    Q_PROPERTY(orbel::ByteFigure reserved READ reserved NOTIFY changed)
    Q_PROPERTY(orbel::SegmentsModel* segments READ segments CONSTANT)
    /// The whole sum in words, for a screen reader.
    Q_PROPERTY(QString summary READ summary NOTIFY changed)

public:
    struct Figures {
        QString path;
        QString description;
        std::optional<VolumeInfo> volume;
        std::optional<KindTotals> measured; ///< absent: no scan yet

        bool operator==(const Figures&) const = default;
    };

    explicit DiskLedger(QObject* parent = nullptr);

    void setFigures(Figures figures);

    bool isKnown() const { return figures_.volume.has_value(); }
    bool isMeasured() const { return figures_.measured.has_value(); }
    QString path() const { return figures_.path; }
    QString description() const { return figures_.description; }
    ByteFigure total() const { return ByteFigure(volume().total); }
    ByteFigure free() const { return ByteFigure(volume().free); }
    ByteFigure used() const { return ByteFigure(volume().used); }
    ByteFigure measured() const { return ByteFigure(measuredBytes_); }
    ByteFigure notMeasured() const;
    ByteFigure shared() const;
    ByteFigure reserved() const { return ByteFigure(volume().otherVolumes()); }
    SegmentsModel* segments() const { return segments_; }
    QString summary() const;

Q_SIGNALS:
    void changed();

private:
    VolumeInfo volume() const { return figures_.volume.value_or(VolumeInfo()); }
    void updateSegments();

    Figures figures_;
    quint64 measuredBytes_ = 0;
    SegmentsModel* segments_;
};

} // namespace orbel
