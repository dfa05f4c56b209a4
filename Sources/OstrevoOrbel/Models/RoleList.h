#pragma once

#include <functional>
#include <optional>
#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>
#include <string_view>
#include <vector>

namespace orbel {

/// A list whose roles are a table: the name that QML knows each by, and how to read it of a row. Used on the
/// main thread. The role "key" is also there as `keyRole`, and "label", else "name" or "title", else the last
/// part of "path", as the display role, by which rows are found. Heirs name it with its namespace: qmllint of
/// Qt 6.4 finds it only so.
class RoleList : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to a model.")
    Q_PROPERTY(int count READ rowCount NOTIFY countChanged)

public:
    int rowCount(const QModelIndex& parent = {}) const override = 0;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;
    /// The same by name; nothing for a name or a row that there is none of.
    QVariant value(int row, const QByteArray& role) const;
    /// A key is found by `rowOfKey`, the first letters of a name at once where there is `nameBytes`.
    QModelIndexList match(const QModelIndex& start, int role, const QVariant& value, int hits = 1,
                          Qt::MatchFlags flags = {Qt::MatchStartsWith | Qt::MatchWrap}) const override;

Q_SIGNALS:
    void countChanged();

protected:
    struct Role {
        QByteArray name;
        std::function<QVariant(int row)> read; ///< asked only for rows that there are
    };

    explicit RoleList(QObject* parent = nullptr);

    /// In the constructor, once.
    void setRoles(std::vector<Role> roles) { roles_ = std::move(roles); }
    /// The row that has this key, -1 for none. Asks each row; a long list knows a quicker way.
    virtual int rowOfKey(const QString& key) const;
    /// The bytes that the display text of a row is made of, so that a long list is looked through without
    /// making texts; absent where that is not possible, and then for every row.
    virtual std::optional<std::string_view> nameBytes(int /*row*/) const { return std::nullopt; }
    /// What the rows show may have changed.
    void notifyRows();

private:
    std::size_t numberOf(const char* name) const; ///< as many as there are when there is none
    QString displayText(int row) const;
    QModelIndexList firstNamed(int from, const QString& typed) const;

    std::vector<Role> roles_;
};

} // namespace orbel
