#include "Models/JournalModel.h"

#include "Launch/Screen.h"
#include "Models/ByteFigure.h"
#include "Models/ItemKey.h"
#include "Models/Wording.h"
#include "Scan/ContentKind.h"
#include "Util/PathText.h"

#include <algorithm>
#include <QStringList>

namespace orbel {

namespace {

/// So many rows are unfolded at first, the newest sessions' first.
constexpr std::size_t rowsUnfoldedAtFirst = 200;

QString screenTitleOf(DeletionModule module) {
    const auto screen = [module] {
        switch (module) {
        case DeletionModule::map:
            return Screen::map;
        case DeletionModule::largeOld:
            return Screen::large;
        case DeletionModule::duplicates:
            return Screen::duplicates;
        case DeletionModule::uninstall:
            return Screen::uninstall;
        case DeletionModule::emptyFolders:
        case DeletionModule::brokenShortcuts:
        case DeletionModule::rebuildable:
            break;
        }
        return Screen::tidy;
    }();
    return textOf(screenTitles.at(static_cast<std::size_t>(screen)));
}

QString capitalised(QString text) {
    if (!text.isEmpty())
        text[0] = text[0].toUpper();
    return text;
}

} // namespace

JournalModel::JournalModel(QObject* parent)
    : QAbstractListModel(parent), history_(std::make_shared<JournalHistory>()) {}

void JournalModel::setAsking(std::function<void(Line)> askLine, std::function<void(std::size_t)> askSession) {
    askLine_ = std::move(askLine);
    askSession_ = std::move(askSession);
}

// The rows.

std::vector<JournalModel::Card> JournalModel::cardsOf(const JournalHistory& history,
                                                      std::optional<Matches> matches) const {
    std::unordered_map<std::string_view, bool> foldedNow;
    for (const auto& card : cards_)
        foldedNow[history_->sessions()[card.session].id] = card.folded;
    std::vector<Card> cards;
    std::size_t rows = 0;
    const auto add = [&](std::uint32_t session, std::optional<std::vector<std::uint32_t>> shown) {
        Card card{.session = session, .matches = std::move(shown)};
        const auto id = history.sessions()[session].id;
        rows += card.matches ? card.matches->size() : history.sessions()[session].items.size();
        const auto user = foldedByUser_.find(std::string(id));
        const auto now = foldedNow.find(id);
        if (user != foldedByUser_.end())
            card.folded = user->second;
        else if (!card.matches && now != foldedNow.end())
            card.folded = now->second;
        else
            card.folded = !card.matches && session > 0 && rows > rowsUnfoldedAtFirst;
        cards.push_back(std::move(card));
    };
    if (matches)
        for (auto& [session, items] : *matches)
            add(session, std::move(items));
    else
        for (std::uint32_t session = 0; session < history.sessions().size(); ++session)
            add(session, std::nullopt);
    return cards;
}

std::size_t JournalModel::itemsIn(const Card& card) const {
    return card.matches ? card.matches->size() : history_->sessions()[card.session].items.size();
}

/// Whether `other`, of another history, shows the same rows as `card`, of this one.
bool JournalModel::isSameCard(const Card& card, const JournalHistory& history, const Card& other) const {
    const auto& session = history.sessions()[other.session];
    return history_->sessions()[card.session].id == session.id && card.folded == other.folded
           && card.matches == other.matches
           && history_->sessions()[card.session].items.size() == session.items.size();
}

void JournalModel::numberRows() {
    rows_ = 0;
    cardOfSession_.assign(history_->sessions().size(), UINT32_MAX);
    for (std::uint32_t i = 0; i < cards_.size(); ++i) {
        cards_[i].firstRow = rows_;
        cardOfSession_[cards_[i].session] = i;
        rows_ += rowsIn(cards_[i]);
    }
}

void JournalModel::setHistory(std::shared_ptr<const JournalHistory> history, std::optional<Matches> matches,
                              const std::string& home, std::chrono::system_clock::time_point now) {
    home_ = home;
    now_ = now;
    auto cards = cardsOf(*history, std::move(matches));
    const auto added = static_cast<std::ptrdiff_t>(cards.size()) - static_cast<std::ptrdiff_t>(cards_.size());
    // Nearly always the same rows say something new, or a new session stands above them.
    bool isGrown = added >= 0 && !cards_.empty();
    for (std::size_t i = 0; isGrown && i < cards_.size(); ++i)
        isGrown = isSameCard(cards_[i], *history, cards[i + static_cast<std::size_t>(added)]);
    int newRows = 0;
    for (std::ptrdiff_t i = 0; isGrown && i < added; ++i) {
        const auto& card = cards[static_cast<std::size_t>(i)];
        const auto items =
            card.matches ? card.matches->size() : history->sessions()[card.session].items.size();
        newRows += 1 + (card.folded ? 0 : static_cast<int>(items));
    }
    if (!isGrown)
        beginResetModel();
    else if (newRows > 0)
        beginInsertRows({}, 0, newRows - 1);
    // A journal that is another one by now knows nothing of these lines.
    const auto isSameLine = [&](Line line) {
        return line < history->entries().size() && line < history_->entries().size()
               && history->entry(line).id == history_->entry(line).id;
    };
    std::erase_if(known_, [&](const auto& known) { return !isSameLine(known.first); });
    history_ = std::move(history);
    cards_ = std::move(cards);
    tallies_.clear();
    for (const auto& [line, known] : known_) {
        const auto& item = history_->item(line);
        if (!isWaiting(item))
            continue;
        tallies_[history_->placeOf(line).session].add(known.outlook);
    }
    numberRows();
    if (!isGrown)
        endResetModel();
    else if (newRows > 0)
        endInsertRows();
    if (isGrown)
        tellAll();
    Q_EMIT rowsChanged();
}

void JournalModel::tellAll() {
    if (rows_ > 0)
        Q_EMIT dataChanged(index(0), index(rows_ - 1));
}

void JournalModel::setFolded(int row, bool folded) {
    const int head = headOf(row);
    if (head < 0)
        return;
    auto& card = cards_[static_cast<std::size_t>(&cardAt(head) - cards_.data())];
    if (card.folded == folded)
        return;
    foldedByUser_[std::string(history_->sessions()[card.session].id)] = folded;
    const auto items = static_cast<int>(itemsIn(card));
    if (folded)
        beginRemoveRows({}, head + 1, head + items);
    else
        beginInsertRows({}, head + 1, head + items);
    card.folded = folded;
    numberRows();
    if (folded)
        endRemoveRows();
    else
        endInsertRows();
    Q_EMIT dataChanged(index(head), index(head), {FoldedRole, LastRole});
    Q_EMIT rowsChanged();
}

const JournalModel::Card& JournalModel::cardAt(int row) const {
    return *std::prev(std::ranges::upper_bound(cards_, row, {}, &Card::firstRow));
}

std::optional<JournalHistory::Item> JournalModel::itemAt(int row) const {
    if (row < 0 || row >= rows_)
        return std::nullopt;
    const auto& card = cardAt(row);
    if (row == card.firstRow)
        return std::nullopt;
    const auto place = static_cast<std::size_t>(row - card.firstRow - 1);
    return history_->sessions()[card.session].items[card.matches ? (*card.matches)[place] : place];
}

int JournalModel::headOf(int row) const {
    return row < 0 || row >= rows_ ? -1 : cardAt(row).firstRow;
}

const JournalEntry* JournalModel::entryAt(int row) const {
    const auto item = itemAt(row);
    return item ? &history_->entry(item->line) : nullptr;
}

bool JournalModel::isPossibleAt(int row) const {
    return row >= 0 && row < rows_ && index(row).data(PossibleRole).toBool();
}

const JournalHistory::Session& JournalModel::sessionAt(int row) const {
    return history_->sessions()[cardAt(row).session];
}

int JournalModel::rowOf(Line line) const {
    const auto place = history_->placeOf(line);
    const auto card = cardOfSession_[place.session];
    if (card == UINT32_MAX || cards_[card].folded)
        return -1;
    const auto& shown = cards_[card];
    if (!shown.matches)
        return shown.firstRow + 1 + static_cast<int>(place.item);
    const auto found = std::ranges::lower_bound(*shown.matches, place.item);
    if (found == shown.matches->end() || *found != place.item)
        return -1;
    return shown.firstRow + 1 + static_cast<int>(found - shown.matches->begin());
}

// Where the items are.

bool JournalModel::isWaiting(const JournalHistory::Item& item) const {
    return !item.restored && history_->entry(item.line).result == JournalEntry::Result::trashed;
}

void JournalModel::setOutlooks(const std::vector<std::pair<Line, PutBackOutlook>>& outlooks) {
    int first = rows_;
    int last = -1;
    const auto tell = [&](int row) {
        if (row < 0)
            return;
        first = std::min(first, row);
        last = std::max(last, row);
    };
    for (const auto& [line, outlook] : outlooks) {
        if (line >= history_->entries().size() || !isWaiting(history_->item(line)))
            continue;
        auto& tally = tallies_[history_->placeOf(line).session];
        const auto [known, isNew] = known_.try_emplace(line);
        if (!isNew)
            tally.take(known->second.outlook);
        tally.add(outlook);
        known->second = {.outlook = outlook, .look = look_};
        tell(rowOf(line));
        if (const auto card = cardOfSession_[history_->placeOf(line).session]; card != UINT32_MAX)
            tell(cards_[card].firstRow);
    }
    if (last >= 0)
        Q_EMIT dataChanged(index(first), index(last),
                           {StageRole, PossibleRole, ReasonRole, RemarkRole, ActionRole});
}

void JournalModel::distrust() {
    ++look_;
    tellAll();
}

bool JournalModel::isTrusted(Line line) const {
    const auto found = known_.find(line);
    return found != known_.end() && found->second.look == look_;
}

const JournalModel::Known* JournalModel::known(Line line) const {
    const auto found = known_.find(line);
    if (askLine_ && (found == known_.end() || found->second.look != look_))
        askLine_(line);
    return found == known_.end() ? nullptr : &found->second;
}

void JournalModel::Tally::add(const PutBackOutlook& outlook) {
    ++known;
    possible += outlook.kind == PutBackOutlook::Kind::possible ? 1 : 0;
    gone += outlook.kind == PutBackOutlook::Kind::gone ? 1 : 0;
}

void JournalModel::Tally::take(const PutBackOutlook& outlook) {
    --known;
    possible -= outlook.kind == PutBackOutlook::Kind::possible ? 1 : 0;
    gone -= outlook.kind == PutBackOutlook::Kind::gone ? 1 : 0;
}

/// What is known of the session's items that are not back; absent until that is known of all of them.
std::optional<JournalModel::Tally> JournalModel::tallyOf(const Card& card) const {
    const auto& session = history_->sessions()[card.session];
    const auto waiting = session.moved - session.restored;
    if (waiting == 0)
        return Tally();
    auto& tally = tallies_[card.session];
    if (askSession_ && tally.look != look_) {
        tally.look = look_;
        askSession_(card.session);
    }
    return tally.known == waiting ? std::optional(tally) : std::nullopt;
}

// What the rows say.

int JournalModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : rows_;
}

QVariant JournalModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const auto& card = cardAt(index.row());
    if (role == LastRole)
        return index.row() + 1 == card.firstRow + rowsIn(card);
    if (const auto item = itemAt(index.row()))
        return valueOf(*item, role);
    return headData(card, role);
}

QVariant JournalModel::headData(const Card& card, int role) const {
    const auto& session = history_->sessions()[card.session];
    const auto skipped = session.items.size() - session.moved;
    switch (role) {
    case HeadRole:
        return true;
    case Qt::DisplayRole:
    case TitleRole:
        return capitalised(dateText(session.time, now_));
    case DetailRole: {
        QStringList parts{screenTitleOf(history_->entry(session.items.front().line).module)};
        const auto skippedText = tr("%1 skipped").arg(countText(skipped));
        if (session.moved > 0) {
            parts << countOf(session.moved, tr("item"), tr("items"));
            const auto size = ByteFigure(session.bytes).text();
            parts << (skipped > 0 ? size + QStringLiteral(", ") + skippedText : size);
        } else {
            parts << skippedText;
        }
        return parts.join(QStringLiteral(" · "));
    }
    case FoldedRole:
        return card.folded;
    case RemarkRole: {
        const auto tally = tallyOf(card);
        if (!tally)
            return QString();
        if (tally->possible == 0 && tally->known > tally->gone)
            return tr("nothing can be put back now");
        if (tally->possible == 0)
            return session.moved == 0 ? tr("nothing was moved") : tr("nothing left to put back");
        if (tally->possible == session.moved && session.moved > 1)
            return tr("all %1 can be put back").arg(countText(tally->possible));
        return tr("%1 can be put back").arg(countText(tally->possible));
    }
    case ActionRole: {
        // Until the disk has been asked, as many as the journal knows of.
        const auto tally = tallyOf(card);
        const auto count = tally ? tally->possible : session.moved - session.restored;
        if (count == 0)
            return tr("Put Back");
        if (count == session.moved && count > 1)
            return tr("Put Back All %1").arg(countText(count));
        return tr("Put Back %1").arg(countOf(count, tr("Item"), tr("Items")));
    }
    case PossibleRole: {
        const auto tally = tallyOf(card);
        return tally && tally->possible > 0;
    }
    default:
        return {};
    }
}

QVariant JournalModel::valueOf(const JournalHistory::Item& item, int role) const {
    const auto& entry = history_->entry(item.line);
    switch (role) {
    case HeadRole:
    case FoldedRole:
        return false;
    case Qt::DisplayRole:
        return withoutIsolates(textOf(entry.title));
    case TitleRole:
        return textOf(entry.title);
    case keyRole:
        return keyOf(entry.originalPath);
    case PlaceRole: {
        const auto stage = stageOf(item);
        const bool isInTrash = stage == QLatin1String("inTrash") || stage == QLatin1String("occupied");
        return keyOf(isInTrash && entry.trashPath ? *entry.trashPath : entry.originalPath);
    }
    case DetailRole:
        return textOf(tildePath(entry.originalPath, home_));
    case KindRole: {
        const auto name = lastPathComponent(entry.originalPath);
        const bool isFolder = entry.trashedIdentity && entry.trashedIdentity->isDirectory;
        return static_cast<int>(classifyContent(name, isFolder, isFolder && isPackage(name)));
    }
    case ReasonRole:
        return reasonOf(item);
    case SizeRole:
        return entry.bytes ? ByteFigure(*entry.bytes).text() : QStringLiteral("—");
    case StageRole:
        return stageOf(item);
    case PossibleRole: {
        const auto* const now = isWaiting(item) ? known(item.line) : nullptr;
        return now != nullptr && now->outlook.kind == PutBackOutlook::Kind::possible;
    }
    default:
        return {};
    }
}

QString JournalModel::stageOf(const JournalHistory::Item& item) const {
    if (history_->entry(item.line).result == JournalEntry::Result::skipped)
        return QStringLiteral("skipped");
    if (item.restored)
        return QStringLiteral("putBack");
    const auto* const now = known(item.line);
    if (now == nullptr)
        return {};
    switch (now->outlook.kind) {
    case PutBackOutlook::Kind::possible:
    case PutBackOutlook::Kind::refused:
        return QStringLiteral("inTrash");
    case PutBackOutlook::Kind::gone:
        return QStringLiteral("gone");
    case PutBackOutlook::Kind::occupied:
        break;
    }
    return QStringLiteral("occupied");
}

QString JournalModel::reasonOf(const JournalHistory::Item& item) const {
    const auto& entry = history_->entry(item.line);
    if (entry.result == JournalEntry::Result::skipped)
        return textOf(entry.reason.value_or(""));
    if (item.restored)
        return tr("Put back %1").arg(dateText(history_->entry(*item.restored).time, now_));
    const auto* const now = known(item.line);
    if (now != nullptr && now->outlook.reason)
        return textOf(*now->outlook.reason);
    return textOf(entry.note.value_or(""));
}

QHash<int, QByteArray> JournalModel::roleNames() const {
    return {{keyRole, "key"},       {PlaceRole, "place"},   {HeadRole, "head"},         {TitleRole, "title"},
            {DetailRole, "detail"}, {StageRole, "stage"},   {PossibleRole, "possible"}, {LastRole, "last"},
            {FoldedRole, "folded"}, {RemarkRole, "remark"}, {ActionRole, "action"},     {KindRole, "kind"},
            {ReasonRole, "reason"}, {SizeRole, "size"}};
}

} // namespace orbel
