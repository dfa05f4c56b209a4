#pragma once

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>
#include <vector>

namespace orbel {

/// The parts of a volume in the order of the bar; their bytes add up to the whole.
class SegmentsModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to a DiskLedger.")

public:
    /// What a part is: a kind of what was measured, or one of the rest.
    enum class Part { Kind, Trash, NotMeasured, Reserved, Free };
    Q_ENUM(Part)

    struct Segment {
        Part part = Part::Kind;
        int kind = -1; ///< FileKind's raw value; -1 when `part` is another
        QString title;
        quint64 bytes = 0;
        double fraction = 0; ///< of the whole bar

        bool operator==(const Segment&) const = default;
    };

    enum Role { PartRole = Qt::UserRole, KindRole, TitleRole, BytesRole, SizeRole, FractionRole };

    using QAbstractListModel::QAbstractListModel;

    void setSegments(std::vector<Segment> segments);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    std::vector<Segment> segments_;
};

} // namespace orbel
