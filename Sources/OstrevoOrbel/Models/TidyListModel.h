#pragma once

#include "Models/RoleList.h"
#include "Models/Ticks.h"
#include "Util/TextMatcher.h"

#include <QtQml/qqmlregistration.h>
#include <string>
#include <unordered_map>
#include <vector>

namespace orbel {

/// What a rule found, to be tidied away: each with its words, ticked or not. What is refused stays in the
/// list with its reason and is never ticked.
///
/// Roles: `path` for people; `detail`, `badge`; `warn`, the badge tells of something amiss; `ticked`,
/// `refusal`; `words` for assistive technology.
class TidyListModel : public orbel::RoleList {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the TidyFlow.")
    /// Of the rows that the filter leaves, those that may be ticked.
    Q_PROPERTY(int tickable READ tickable NOTIFY changed)
    /// Of all rows.
    Q_PROPERTY(int total READ total NOTIFY changed)
    Q_PROPERTY(int tickedCount READ tickedCount NOTIFY changed)
    /// The same with all that lies inside.
    Q_PROPERTY(int tickedInside READ tickedInside NOTIFY changed)

public:
    struct Row {
        TickedItem item;
        QString detail{};
        QString badge{};
        bool isAmiss = false;
        bool isPreselected = false;
    };

    TidyListModel();

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
    bool isTicked(int shown) const { return ticks_.contains(row(shown).item.item.id); }
    bool isRow(int row) const { return row >= 0 && row < rowCount(); }
    std::vector<TickedItem> ticked() const;
    int total() const { return static_cast<int>(rows_.size()); }
    int tickable() const;
    int tickedCount() const { return ticks_.count(); }
    int tickedInside() const;
    /// Ticked rows that the filter hides.
    int hiddenTicked() const { return ticks_.hiddenCount(); }

    int rowCount(const QModelIndex& parent = {}) const override;

Q_SIGNALS:
    void changed();

private:
    QString pathText(const Row& row) const; ///< for people
    void show();
    bool isShown(const TickedItem& item) const;

    Ticks ticks_;
    std::vector<Row> rows_;
    std::vector<std::size_t> shown_;                ///< of `rows_`
    std::unordered_map<std::string, bool> choices_; ///< ticked or not, by id
    std::string home_;
    TextMatcher filter_{""};
};

} // namespace orbel
