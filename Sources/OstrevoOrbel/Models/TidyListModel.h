#pragma once

#include "Models/RoleList.h"
#include "Models/Ticks.h"
#include "Util/Iso8601.h"
#include "Util/TextMatcher.h"

#include <memory>
#include <optional>
#include <QtQml/qqmlregistration.h>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace orbel {

/// What a rule found, to be tidied away: each with its words, ticked or not. What is refused stays in the
/// list with its reason and is never ticked.
///
/// Roles: `path` for people; `detail`, `badge`; `warn`, the badge tells of something amiss; `size`; `ticked`,
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
        bool isSized = false; ///< its size is worth a word
        QString program{};    ///< that makes it again
        Date newestChange{};
    };
    /// What a row has to be like to be shown.
    struct Filter {
        QString text{};    ///< in its path
        QString program{}; ///< empty for any
        std::optional<Date> unchangedSince{};

        bool isNone() const { return text.isEmpty() && program.isEmpty() && !unchangedSince; }
        bool operator==(const Filter&) const = default;
    };
    /// Shared with the threads that tick them.
    using Rows = std::vector<std::shared_ptr<const Row>>;

    TidyListModel();

    /// What is ticked of rows to come, as far as that is known: a value that any thread may use.
    struct Choices {
        std::shared_ptr<const Ticks::Content> ticked;
        std::unordered_map<std::string, bool> byHand; ///< ticked or not one by one, by id
        bool preselects = true;

        std::unique_ptr<Ticks::Content> of(const Rows& rows) const;
    };
    Choices choices();

    /// What was ticked or unticked by hand stays so, until `forgetChoices`. `ticked` is what `choices` give
    /// of these rows, and is made again where they have changed since.
    void setRows(Rows rows, std::string home, const Choices& choices, std::unique_ptr<Ticks::Content> ticked);
    void forgetChoices();
    void clear();
    void setFilter(Filter filter);
    const Filter& filter() const { return filter_; }
    void setTicked(int row, bool ticked);
    /// Unticks all there are, shown or not: nothing stays ticked unseen, and nothing is ticked by itself.
    void untickAll();
    /// Those that are shown.
    Rows shownRows() const;
    /// They have been ticked, beside what was.
    void noteAllTicked();
    Ticks& ticks() { return ticks_; }
    /// Takes out what is at these paths or inside them.
    void remove(const std::vector<std::string>& paths);

    const Rows& rows() const { return rows_; }
    const Row& row(int shown) const { return *rows_[shown_[static_cast<std::size_t>(shown)]]; }
    bool isTicked(int shown) const { return ticks_.contains(row(shown).item.item.id); }
    bool isRow(int row) const { return row >= 0 && row < rowCount(); }
    std::vector<TickedItem> ticked() const;
    /// All rows with what lies inside them.
    std::uint64_t totalInside() const { return inside_; }
    /// The sizes of all rows.
    std::uint64_t totalBytes() const { return bytes_; }
    int total() const { return static_cast<int>(rows_.size()); }
    int tickable() const { return tickable_; }
    int tickedCount() const { return ticks_.count(); }
    std::uint64_t tickedBytes() const { return ticks_.sums().bytes; }
    int tickedInside() const { return static_cast<int>(ticks_.sums().count); }
    /// Ticked rows that the filter hides.
    int hiddenTicked() const { return ticks_.hiddenCount(); }

    int rowCount(const QModelIndex& parent = {}) const override;

protected:
    int rowOfKey(const QString& key) const override;

Q_SIGNALS:
    void changed();

private:
    QString pathText(const Row& row) const; ///< for people
    void show();
    bool passes(const Row& row, const TextMatcher& text) const;

    Ticks ticks_;
    Rows rows_;
    std::vector<std::size_t> shown_; ///< of `rows_`
    int tickable_ = 0;               ///< of those that are shown
    std::uint64_t inside_ = 0;
    std::uint64_t bytes_ = 0;
    std::unordered_map<std::string, bool> choices_; ///< ticked or not one by one, by id
    bool preselects_ = true;
    std::string home_;
    Filter filter_;
    std::unordered_set<std::string_view> shownPaths_; ///< while there is a filter
};

} // namespace orbel
