#pragma once

#include "Models/TickedItem.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>
#include <string>
#include <unordered_map>
#include <vector>

namespace orbel {

/// What a rule found, to be tidied away: each with its words, ticked or not. What is refused stays in the
/// list with its reason and is never ticked.
class TidyListModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the TidyFlow.")
    /// Of the rows that the filter leaves.
    Q_PROPERTY(int count READ rowCount NOTIFY changed)
    /// Of those, the ones that may be ticked.
    Q_PROPERTY(int tickable READ tickable NOTIFY changed)
    /// Of all rows.
    Q_PROPERTY(int total READ total NOTIFY changed)
    Q_PROPERTY(int tickedCount READ tickedCount NOTIFY changed)
    /// The same with all that lies inside.
    Q_PROPERTY(int tickedInside READ tickedInside NOTIFY changed)

public:
    enum Role {
        PathRole = Qt::UserRole + 1, ///< for people
        DetailRole,
        BadgeRole,
        WarnRole, ///< the badge tells of something amiss
        TickedRole,
        RefusalRole,
        WordsRole ///< for assistive technology
    };
    struct Row {
        TickedItem item;
        QString detail{};
        QString badge{};
        bool isAmiss = false;
        bool isTicked = false; ///< at first
    };

    using QAbstractListModel::QAbstractListModel;

    /// What was ticked or unticked by hand stays so, until `forgetChoices`.
    void setRows(std::vector<Row> rows, std::string home);
    void forgetChoices() { choices_.clear(); }
    void setFilter(const QString& text);
    void setTicked(int row, bool ticked);
    /// Ticks all rows that are shown, or unticks all there are: nothing stays ticked unseen.
    void setAllTicked(bool ticked);
    /// Takes out what is at these paths or inside them.
    void remove(const std::vector<std::string>& paths);

    const std::vector<Row>& rows() const { return rows_; }
    const Row& row(int shown) const { return rows_[shown_[static_cast<std::size_t>(shown)]]; }
    bool isRow(int row) const { return row >= 0 && row < rowCount(); }
    std::vector<TickedItem> ticked() const;
    int total() const { return static_cast<int>(rows_.size()); }
    int tickable() const;
    int tickedCount() const;
    int tickedInside() const;
    /// Ticked rows that the filter hides.
    int hiddenTicked() const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void changed();

private:
    void show();
    bool choose(Row& row, bool ticked);

    std::vector<Row> rows_;
    std::vector<std::size_t> shown_;                ///< of `rows_`
    std::unordered_map<std::string, bool> choices_; ///< ticked or not, by id
    std::string home_;
    QString filter_;
};

} // namespace orbel
