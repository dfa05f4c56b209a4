#pragma once

#include "Journal/PutBack.h"
#include "Models/JournalHistory.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace orbel {

/// The rows of the journal's screen: each session's head, and below it its items unless it is folded. Rows
/// are made of the history when they are asked for. Where an item is now is asked of the disk by somebody
/// else, who is told which rows are drawn; until the answer is there the row does without.
class JournalModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the JournalFlow.")
    Q_PROPERTY(int count READ rowCount NOTIFY rowsChanged)

public:
    using Line = JournalHistory::Line;

    enum Role {
        HeadRole = Qt::UserRole, ///< the row is a session's head
        TitleRole,               ///< "Today at 09:26"; an item's title
        DetailRole,              ///< "Large and Old · 3 items · 26.7 GB"; an item's path
        StageRole,               ///< "", "inTrash", "putBack", "gone", "occupied" or "skipped"
        PossibleRole,            ///< something of it can be put back
        LastRole,                ///< nothing of its session follows
        // Of a head.
        FoldedRole,
        RemarkRole, ///< "all 3 can be put back"
        ActionRole, ///< "Put Back All 3"
        // Of an item; its key is the path that it had.
        PlaceRole, ///< the key of where it is now: in the Trash, else where it was
        KindRole,
        ReasonRole,
        SizeRole
    };

    /// What matches a search: sessions in order, in each the items in order.
    using Matches = std::vector<std::pair<std::uint32_t, std::vector<std::uint32_t>>>;

    explicit JournalModel(QObject* parent = nullptr);

    /// Called whenever a row is drawn that would tell more if it were known where this line's item is now,
    /// or all items of this session.
    void setAsking(std::function<void(Line)> askLine, std::function<void(std::size_t session)> askSession);

    /// Rows that stay keep their place and their fold. `matches`: what is shown of it; absent for all.
    void setHistory(std::shared_ptr<const JournalHistory> history, std::optional<Matches> matches,
                    const std::string& home, std::chrono::system_clock::time_point now);
    void setOutlooks(const std::vector<std::pair<Line, PutBackOutlook>>& outlooks);
    /// What is known of the disk may no longer be so: it is shown until it has been asked again.
    void distrust();
    bool isTrusted(Line line) const;

    void setFolded(int row, bool folded);
    /// The row of the head above; of a head, its own.
    int headOf(int row) const;
    /// Of an item; null for a head.
    const JournalEntry* entryAt(int row) const;
    bool isPossibleAt(int row) const;
    const JournalHistory::Session& sessionAt(int row) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void rowsChanged();

private:
    /// A session as it is shown.
    struct Card {
        std::uint32_t session = 0;
        std::optional<std::vector<std::uint32_t>> matches; ///< the items that are shown; absent for all
        bool folded = false;
        int firstRow = 0;
    };
    struct Known {
        PutBackOutlook outlook;
        int look = 0;
    };
    /// Of a session: of how many of its items that are not back it is known where they are, how many of these
    /// can go back, and how many are gone.
    struct Tally {
        std::size_t known = 0;
        std::size_t possible = 0;
        std::size_t gone = 0;
        int look = 0; ///< when it was last asked for as a whole

        void add(const PutBackOutlook& outlook);
        void take(const PutBackOutlook& outlook);
    };

    std::vector<Card> cardsOf(const JournalHistory& history, std::optional<Matches> matches) const;
    std::size_t itemsIn(const Card& card) const;
    int rowsIn(const Card& card) const { return 1 + (card.folded ? 0 : static_cast<int>(itemsIn(card))); }
    bool isSameCard(const Card& card, const JournalHistory& history, const Card& other) const;
    void numberRows();
    void tellAll();
    const Card& cardAt(int row) const;
    std::optional<JournalHistory::Item> itemAt(int row) const;
    bool isWaiting(const JournalHistory::Item& item) const;
    const Known* known(Line line) const;
    QVariant headData(const Card& card, int role) const;
    QVariant valueOf(const JournalHistory::Item& item, int role) const;
    QString stageOf(const JournalHistory::Item& item) const;
    QString reasonOf(const JournalHistory::Item& item) const;
    std::optional<Tally> tallyOf(const Card& card) const;
    int rowOf(Line line) const;

    std::shared_ptr<const JournalHistory> history_;
    std::vector<Card> cards_;
    std::vector<std::uint32_t> cardOfSession_;
    std::unordered_map<std::string, bool> foldedByUser_; ///< by session
    int rows_ = 0;
    std::unordered_map<Line, Known> known_;
    mutable std::unordered_map<std::uint32_t, Tally> tallies_; ///< by session
    int look_ = 1; ///< what was learnt at an earlier look is not trusted
    std::function<void(Line)> askLine_;
    std::function<void(std::size_t)> askSession_;
    std::string home_;
    std::chrono::system_clock::time_point now_;
};

} // namespace orbel
