#pragma once

#include "Models/ByteFigure.h"
#include "Models/TickedItem.h"

#include <functional>
#include <map>
#include <memory>
#include <QObject>
#include <QtQml/qqmlregistration.h>
#include <string>
#include <unordered_map>
#include <vector>

namespace orbel {

/// What is ticked on one screen. It keeps the items themselves, as they were when they were ticked, and is
/// read only to ask for a confirmation, which keeps its own. Lives on the main thread; each screen has
/// its own. Those that the MoveFlow watches are empty after a move or a new scan.
///
/// No ticked item lies inside another: ticking a folder takes the place of what was ticked in it, and nothing
/// more can be ticked inside.
class Ticks : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to a screen's model.")
    Q_PROPERTY(int count READ count NOTIFY changed)
    Q_PROPERTY(orbel::ByteFigure bytes READ bytes NOTIFY changed)
    /// "3 items ticked"
    Q_PROPERTY(QString statement READ statement NOTIFY changed)
    /// "Frees 20.8 GB – 26.7 GB", one figure when that is certain
    Q_PROPERTY(QString frees READ frees NOTIFY changed)
    /// How many are ticked that the screen's filters hide.
    Q_PROPERTY(int hiddenCount READ hiddenCount NOTIFY changed)
    /// "2 of 3 hidden by filters", "all 3 visible with these filters"; empty without filters
    Q_PROPERTY(QString remark READ remark NOTIFY changed)
    /// "Review 3 Items…"
    Q_PROPERTY(QString reviewText READ reviewText NOTIFY changed)

public:
    using IsShown = std::function<bool(const TickedItem& item)>;
    using Position = std::function<std::size_t(const TickedItem& item)>;
    using ByPath = std::map<std::string, TickedItem, std::less<>>;

    /// The items as a plain value, which keeps to the rule that none lies inside another.
    class Content {
    public:
        /// False when nothing changed: the item is refused, or lies inside one that there is.
        bool put(TickedItem item);
        bool take(const std::string& id);
        bool contains(const std::string& id) const { return pathOf_.contains(id); }
        const TickedItem* covering(std::string_view path) const;
        bool anyInside(std::string_view path) const;
        const ByPath& byPath() const { return byPath_; }

    private:
        ByPath byPath_;
        std::unordered_map<std::string, std::string> pathOf_; ///< by id
    };

    explicit Ticks(QObject* parent = nullptr) : QObject(parent) {}

    /// Ticks or unticks one. False when nothing changed: it is refused, lies inside a ticked one, or was so.
    bool setTicked(TickedItem item, bool ticked);
    /// Several with a single signal.
    void tickAll(std::vector<TickedItem> items);
    /// These and no others, with a single signal.
    void replaceAll(std::vector<TickedItem> items);
    bool untick(const std::string& id);
    void untickAll(const std::vector<std::string>& ids);
    Q_INVOKABLE void clear();

    /// What is ticked, to make more of it on another thread; it never changes.
    std::shared_ptr<const Content> lend();
    /// Takes what was made of that. False, and nothing changes, when the ticks have changed since.
    bool take(std::shared_ptr<const Content> lent, std::unique_ptr<Content> made);
    /// Another number once all have been cleared or replaced.
    int epoch() const { return epoch_; }

    /// Tells which of them the screen shows; to be given again whenever the filters change. Null: there are
    /// no filters.
    void setFilter(IsShown isShown);
    /// Tells where in the screen's list an item stands. Null: the largest first.
    void setPosition(Position position) { position_ = std::move(position); }

    bool contains(const std::string& id) const { return content_->contains(id); }
    /// The ticked item that is, or holds, what is at this path; null when there is none.
    const TickedItem* covering(std::string_view path) const { return content_->covering(path); }
    /// Whether something inside the folder at this path is ticked, the folder itself not counted.
    bool anyInside(std::string_view path) const { return content_->anyInside(path); }

    /// In the order of the screen's list, whatever the order of ticking.
    std::vector<TickedItem> items() const;
    const ByPath& byPath() const { return content_->byPath(); }

    int count() const { return static_cast<int>(byPath().size()); }
    /// Of all that is ticked.
    const TickedSums& sums() const { return sums_; }
    ByteFigure bytes() const { return ByteFigure(sums_.bytes); }
    QString statement() const;
    QString frees() const { return sums_.freesText(); }
    int hiddenCount() const { return hidden_; }
    QString remark() const;
    QString reviewText() const;

Q_SIGNALS:
    void changed();

private:
    Content& own();
    void replace(std::unique_ptr<Content> content);
    void tell();

    std::shared_ptr<Content> content_ = std::make_shared<Content>();
    bool isLent_ = false;
    int epoch_ = 0;
    IsShown isShown_;
    Position position_;
    TickedSums sums_;
    int hidden_ = 0;
};

} // namespace orbel
