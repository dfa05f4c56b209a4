#pragma once

#include "Scan/ScanProgress.h"

#include <optional>
#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>
#include <vector>

namespace orbel {

/// The largest entries directly under the root while a scan runs. Figures change with every report; rows
/// change places at most once a second, so that they can be read.
class TopLevelModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the AppModel.")

public:
    static constexpr std::size_t mostRows = 40;
    static constexpr double secondsBetweenSorts = 1;

    /// `path` is the entry's path for people; `fraction` that of the largest one.
    enum Role { NameRole = Qt::UserRole, PathRole, IsFolderRole, BytesRole, SizeRole, FractionRole };

    using QAbstractListModel::QAbstractListModel;

    /// Empties the list; `rootPath` is how the root is shown in front of the names that follow.
    void begin(const QString& rootPath);
    /// Takes the entries of one report, largest first, `elapsed` seconds after the scan began.
    void update(const std::vector<ScanProgress::TopLevel>& entries, double elapsed);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    void replaceRows(const std::vector<ScanProgress::TopLevel>& entries);
    void updateFigures(const std::vector<ScanProgress::TopLevel>& entries);

    QString rootPath_;
    std::vector<ScanProgress::TopLevel> rows_;
    std::uint64_t largest_ = 0;
    std::optional<double> sortedAt_;
};

} // namespace orbel
