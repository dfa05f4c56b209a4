#pragma once

#include "AppModel/LatestJob.h"
#include "AppModel/TickAll.h"
#include "Delete/DeletionItem.h"
#include "Models/MapListModel.h"
#include "Models/Ticks.h"
#include "Safety/SafetyPolicy.h"

#include <memory>
#include <optional>
#include <QList>
#include <QObject>
#include <QtQml/qqmlregistration.h>
#include <unordered_map>
#include <utility>
#include <vector>

namespace orbel {

/// What is ticked on the map, and what may not be and why. Belongs to the MapModel; used on the main thread.
/// Asking the policy asks the disk, which may be asleep: other threads do that, and what they answer holds
/// until the tree changes.
class MapTicking final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the MapModel.")

    /// Something of the tree may be moved: it was not measured elsewhere.
    Q_PROPERTY(bool possible READ isPossible NOTIFY changed)
    Q_PROPERTY(orbel::Ticks* ticks READ ticks CONSTANT)
    /// The nodes that are ticked.
    Q_PROPERTY(QList<quint32> nodes READ nodes NOTIFY changed)
    /// Why what is selected cannot be moved to the Trash; empty when it can, or when that is not known yet.
    Q_PROPERTY(QString refusal READ refusal NOTIFY answered)
    Q_PROPERTY(bool movable READ isMovable NOTIFY answered)
    /// What to know before the selected item moves; empty when there is nothing.
    Q_PROPERTY(QString note READ note NOTIFY answered)

public:
    /// `rows`, which outlive this, show the ticks; those of them are asked about that are seen.
    MapTicking(std::shared_ptr<const SafetyPolicy> policy, MapListModel& rows);

    // Intents.

    /// Ticks an item that may be moved, once that has been asked, or unticks it. What lies inside a ticked
    /// folder moves with it and has no tick of its own.
    Q_INVOKABLE void toggle(quint32 node);
    /// Ticks all that the list shows and may move.
    Q_INVOKABLE void tickAll();
    Q_INVOKABLE bool isTicked(quint32 node) const;
    /// Why an item cannot be ticked, as far as that is known by now; empty when nothing is known against it.
    Q_INVOKABLE QString refusalOf(quint32 node) const;

    /// Another tree, about which nothing is known; the ticks stay. `elsewhere`: why nothing of it can be
    /// moved, empty for what was measured here.
    void setTree(std::shared_ptr<const FileTree> tree, QString elsewhere);
    void select(std::optional<NodeIndex> node);
    /// Rows have come from this one on. A hundred of them are asked about, and each of the rest once it is
    /// selected or to be ticked.
    void checkRows(int first);

    // State.

    bool isPossible() const { return elsewhere_.isEmpty(); }
    Ticks* ticks() { return &ticks_; }
    QList<quint32> nodes() const;
    QString refusal() const { return refusal_; }
    bool isMovable() const { return isMovable_; }
    QString note() const { return selected_ ? noteOf(*selected_) : QString(); }

Q_SIGNALS:
    void changed();
    void answered();
    /// What was to be ticked may not be, for this reason.
    void refused(quint32 node, const QString& refusal) const;

private:
    using Answers = std::vector<std::pair<NodeIndex, std::optional<DeletionItem>>>;
    void applyAnswers(const Answers& answers);
    QString noteOf(NodeIndex node) const;
    Qt::CheckState stateOf(NodeIndex node) const;
    const PathCanonicalizer& canonicalizer() const { return policy_->canonicalizer(); }

    std::shared_ptr<const SafetyPolicy> policy_;
    MapListModel& rows_;
    std::shared_ptr<const FileTree> tree_ = std::make_shared<const FileTree>();
    QString elsewhere_;
    std::optional<NodeIndex> selected_;
    QString refusal_;
    bool isMovable_ = false;
    Ticks ticks_;
    /// Of the nodes that were asked about, in this tree; empty words for what may be moved.
    std::unordered_map<NodeIndex, QString> refusals_;
    std::unordered_map<NodeIndex, QString> notes_; ///< of the same nodes
    LatestJob selectionJob_{"orbel.safety"};
    LatestJob rowsJob_{"orbel.safety"};
    LatestJob ticking_{"orbel.tick"};
    TickAll tickingAll_{ticks_};
};

} // namespace orbel
