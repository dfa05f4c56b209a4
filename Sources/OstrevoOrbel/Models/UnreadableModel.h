#pragma once

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>
#include <string>
#include <vector>

namespace orbel {

/// What a scan could not read: the first entries by path, at most `mostRows`, with how to read them.
class UnreadableModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the AppModel.")
    /// Entries in the list, and how many there are in all.
    Q_PROPERTY(int count READ count NOTIFY changed)
    Q_PROPERTY(quint64 total READ total NOTIFY changed)
    /// "214 entries could not be read".
    Q_PROPERTY(QString headline READ headline NOTIFY changed)

public:
    static constexpr std::size_t mostRows = 1000;

    /// `command` is what a terminal would measure the entry with: "sudo orbel --scan-json PATH".
    enum Role { PathRole = Qt::UserRole, CommandRole };

    using QAbstractListModel::QAbstractListModel;

    /// `paths` as they are on the disk; `total` counts those that are not among them too.
    void setPaths(std::vector<std::string> paths, quint64 total, const std::string& home);

    int count() const { return static_cast<int>(paths_.size()); }
    quint64 total() const { return total_; }
    QString headline() const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void changed();

private:
    std::vector<std::string> paths_;
    std::string home_;
    quint64 total_ = 0;
};

} // namespace orbel
