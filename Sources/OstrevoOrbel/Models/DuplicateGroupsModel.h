#pragma once

#include "Models/CopyGroup.h"
#include "Models/RoleList.h"
#include "Util/TextMatcher.h"

#include <QtQml/qqmlregistration.h>
#include <string>
#include <vector>

namespace orbel {

/// Groups of copies as the rows of one list: the head of a group, and below it its copies unless it is
/// folded: first the one that is kept, then the others by path. What a row shows is made when it is asked
/// for; folding, filtering and ticking cost no more than a look at every group.
///
/// Roles: `head`, `name`, `kind`, `path` for people, `size`, `folded`, `ticked`, `kept`; `copies` "3 copies
/// · 14.6 GB each" and `frees`, of a head; `changed`, `refusal`, `note`, of a copy; `lastOfGroup`; `words`
/// for assistive technology.
class DuplicateGroupsModel : public orbel::RoleList {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the DuplicatesFlow.")

public:
    /// Over all groups that are there.
    struct Totals {
        std::size_t groups = 0;
        std::size_t shownGroups = 0; ///< what the filters leave of them
        std::uint64_t most = 0;      ///< what may be freed, at most
        std::size_t ticked = 0;      ///< copies
        std::size_t hiddenTicked = 0;
        std::size_t tickedGroups = 0;
        std::uint64_t tickedMost = 0;
        std::uint64_t tickedLeast = 0;
    };
    /// What was found out about each copy of a group, in its order.
    using Answers = std::vector<std::optional<DeletionItem>>;
    /// A group and its answers.
    using Answered = std::pair<std::size_t, Answers>;

    DuplicateGroupsModel();

    void setGroups(std::vector<CopyGroup> groups, std::string home);
    const std::vector<CopyGroup>& groups() const { return groups_; }
    const Totals& totals() const { return totals_; }

    /// Shows the groups with a path that holds this text and at least this many bytes a copy.
    void setFilter(const QString& text, std::uint64_t minimumBytes);
    void setFolded(int row, bool folded);
    void setAllFolded(bool folded);
    /// Of a head: all copies of the group but the one that is kept.
    void toggleTick(int row);
    /// Ticks all copies that are shown, in folded groups too, but those that are kept.
    void tickAllOthers();
    void clearTicks();
    void keep(int row);
    void setRule(KeepRule rule, const std::string& folder);
    /// What is at these paths or inside them is gone, or back. Gives the groups that have a copy there.
    std::vector<std::size_t> setGone(const std::vector<std::string>& paths, bool gone);
    void setAnswers(const std::vector<Answered>& answers);
    void setAnswer(std::size_t group, const std::string& path, const std::optional<DeletionItem>& item);

    bool isHead(int row) const { return rows_[at(row)].copy < 0; }
    const CopyGroup& groupAt(int row) const { return groups_[rows_[at(row)].group]; }
    /// The copy of a row; of a head the one that is kept.
    const DuplicateFile& fileAt(int row) const;
    /// The row of the head of the group that this row belongs to.
    int headOf(int row) const { return headRows_[rows_[at(row)].group]; }
    bool isRow(int row) const { return row >= 0 && row < rowCount(); }

    int rowCount(const QModelIndex& parent = {}) const override;
    /// A head has the key of its kept copy, whose path it shows; as a place in the list it is told
    /// by its group.
    QVariant data(const QModelIndex& index, int role) const override;

protected:
    int rowOfKey(const QString& key) const override;

Q_SIGNALS:
    /// Of the totals.
    void changed();

private:
    /// By group, then by place: every list of rows is in this order.
    struct Row {
        std::uint32_t group = 0;
        std::int32_t place = -1; ///< in CopyGroup::order; -1: the head
        std::int32_t copy = -1;  ///< -1: the head
        auto operator<=>(const Row&) const = default;
    };

    /// The rows of a group, which are shown or not.
    void appendRows(std::vector<Row>& rows, std::size_t group) const;
    static std::size_t at(int row) { return static_cast<std::size_t>(row); }
    bool passes(const CopyGroup& group) const;
    void showRows();
    void arrangeGroup(std::size_t group);
    void moveRow(int from, int to);
    void tellGroup(std::size_t group);
    void countTotals();
    bool isTicked(Row row) const;
    QString wordsOf(Row row) const;
    QString pathText(const DuplicateFile& file) const;

    std::vector<CopyGroup> groups_;
    std::vector<Row> rows_;
    std::vector<int> headRows_; ///< of each group; -1 when it is not shown
    std::string home_;
    TextMatcher filter_{""};
    std::uint64_t minimumBytes_ = 0;
    KeepRule rule_ = KeepRule::newest;
    std::string ruleFolder_;
    Totals totals_;
};

/// "29.2 GB", or "0 B – 29.2 GB" where it is not certain.
QString rangeText(std::uint64_t least, std::uint64_t most);

} // namespace orbel
