#pragma once

#include "AppModel/MapListFlow.h"
#include "AppModel/MapTicking.h"
#include "AppModel/MoveFlow.h"
#include "AppModel/ScanFlow.h"
#include "Map/MapFilter.h"
#include "Models/ComparedScans.h"
#include "Models/KindTotalsModel.h"
#include "Models/MapCrumbsModel.h"
#include "Models/MapWords.h"

#include <memory>
#include <optional>
#include <QObject>
#include <QtQml/qqmlregistration.h>
#include <string>
#include <vector>

namespace orbel {

/// What the map screen is about: the folder that fills the map, the way there, what is selected in it, and
/// the kinds that are shown. What is ticked is the business of its MapTicking. Lives on the main thread and
/// follows the application's tree: after a new scan it shows the same folder again where there still is one,
/// and after a change of the tree the nearest folder that is left.
class MapModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the AppModel.")

    /// The node whose children fill the map.
    Q_PROPERTY(quint32 focus READ focus NOTIFY focusChanged)
    Q_PROPERTY(QString focusName READ focusName NOTIFY focusChanged)
    /// That folder was left out of measuring.
    Q_PROPERTY(bool focusExcluded READ isFocusExcluded NOTIFY focusChanged)
    Q_PROPERTY(bool canGoBack READ canGoBack NOTIFY focusChanged)
    Q_PROPERTY(bool canGoForward READ canGoForward NOTIFY focusChanged)
    Q_PROPERTY(bool canGoUp READ canGoUp NOTIFY focusChanged)
    Q_PROPERTY(orbel::RoleList* crumbs READ crumbs CONSTANT)
    Q_PROPERTY(orbel::MapListFlow* list READ list CONSTANT)
    /// "9 items", "4 items, and 31.5 GB not measured"
    Q_PROPERTY(QString listSummary READ listSummary NOTIFY focusChanged)
    /// "345.2 GB · 88 % of what was measured"
    Q_PROPERTY(QString share READ share NOTIFY legendChanged)

    Q_PROPERTY(orbel::RoleList* legend READ legend CONSTANT)
    /// "Video", "2 kinds", ".iso files"; empty when all is shown.
    Q_PROPERTY(QString filterText READ filterText NOTIFY legendChanged)
    /// The ContentKind when exactly one is chosen, or that of the chosen extension, else -1.
    Q_PROPERTY(int filterKind READ filterKind NOTIFY legendChanged)

    /// Whether tiles are coloured by what changed since an earlier scan, not by kind; so they are as soon as
    /// there is a comparison of the tree that is shown.
    Q_PROPERTY(bool byChange READ isByChange WRITE setByChange NOTIFY byChangeChanged)

    Q_PROPERTY(orbel::MapItemFacts selection READ selection NOTIFY selectionChanged)
    /// The row of what is selected; -1 where the list has none.
    Q_PROPERTY(int selectedRow READ selectedRow NOTIFY selectedRowChanged)
    /// That row, or the one of the innermost folder in the list that holds what is selected; -1 for none.
    Q_PROPERTY(int holdingRow READ holdingRow NOTIFY selectedRowChanged)
    /// What is in the selected folder: "1,234 items in 56 folders", without the folders until they have been
    /// counted. Empty for a file.
    Q_PROPERTY(QString contents READ contents NOTIFY contentsChanged)

    Q_PROPERTY(orbel::MapTicking* ticking READ ticking CONSTANT)

public:
    /// The references outlive this.
    MapModel(const AppEnvironment& environment, std::shared_ptr<const SafetyPolicy> policy,
             const ScanFlow& scan, MoveFlow& moves);

    // Intents.

    /// Shows a folder; of anything else, the folder that it lies in, and selects it.
    Q_INVOKABLE void show(quint32 node);
    Q_INVOKABLE void goBack();
    Q_INVOKABLE void goForward();
    /// Shows the folder above and selects the one that was left.
    Q_INVOKABLE void goUp();
    Q_INVOKABLE void goToRoot();
    Q_INVOKABLE void select(quint32 node);
    Q_INVOKABLE void selectRow(int row);
    Q_INVOKABLE void clearSelection();
    /// Shows only this kind among those that are chosen, or no longer.
    Q_INVOKABLE void toggleKind(int kind);
    /// The same of a NodeChange, where tiles are coloured by these.
    Q_INVOKABLE void toggleChange(int change);
    Q_INVOKABLE void clearFilter();
    /// Shows the root, and of it this alone.
    void showOnly(MapFilter filter);
    /// As show(), for a place that was chosen elsewhere: a filter that would hide it goes.
    void jumpTo(quint32 node);
    Q_INVOKABLE orbel::MapItemFacts facts(quint32 node) const;

    /// Where zooming in on a node leads; absent when that is where the map is.
    std::optional<NodeIndex> zoomTarget(NodeIndex node) const;

    /// Shows a tree. With that of a scan, this happens by itself. `elsewhere`: why nothing of it can be
    /// moved, empty for what was measured here.
    void setTree(std::shared_ptr<const FileTree> tree, std::optional<Coverage> coverage,
                 QString elsewhere = {});

    /// What changed, as far as that is known of a tree; needed while tiles are coloured by it.
    void setCompared(std::shared_ptr<const ComparedScans> compared);

    // State.

    const FileTree& tree() const { return *tree_; }
    const std::shared_ptr<const FileTree>& sharedTree() const { return tree_; }
    const std::optional<Coverage>& coverage() const { return coverage_; }
    quint32 focus() const { return focus_; }
    QString focusName() const;
    /// What the whole map stands for.
    std::uint64_t focusBytes() const;
    bool isFocusExcluded() const { return focus_ < tree_->count() && tree_->isExcluded(focus_); }
    bool canGoBack() const { return !back_.empty(); }
    bool canGoForward() const { return !forward_.empty(); }
    bool canGoUp() const { return focus_ != 0; }
    MapCrumbsModel* crumbs() { return &crumbs_; }
    MapListFlow* list() { return &list_; }
    QString listSummary() const;
    QString share() const;
    MapLegendModel* legend() { return &legend_; }
    const MapFilter& filter() const { return filter_; }
    QString filterText() const;
    int filterKind() const;
    bool isByChange() const { return isByChange_; }
    void setByChange(bool isByChange);
    /// By node, what the tiles are to be coloured by; null where that is their kinds.
    const std::vector<NodeChange>* nodeChanges() const;
    /// One bit for each NodeChange that is chosen as a filter; 0: all are shown.
    unsigned changesShown() const { return changesShown_; }
    /// "Grew by 5.2 GB", "Moved from ~/Downloads/a.iso"; empty where tiles are coloured by kind.
    QString changeText(NodeIndex node) const;
    std::optional<NodeIndex> selectedNode() const { return selected_; }
    MapItemFacts selection() const;
    int selectedRow() const { return selected_ ? list_.rows().rowOf(*selected_) : -1; }
    int holdingRow() const { return selected_ ? list_.rows().rowHolding(*selected_) : -1; }
    QString contents() const { return contents_; }
    MapTicking* ticking() { return &ticking_; }
    /// For the diagnostics: how many tiles were laid out.
    void noteTiles(int tiles) const;

Q_SIGNALS:
    /// Another tree, or another folder of it: the map is to be laid out again.
    void focusChanged();
    void legendChanged();
    void selectionChanged();
    void selectedRowChanged();
    void contentsChanged();
    void byChangeChanged();
    /// What was to be ticked may not be, for this reason.
    void tickRefused(const QString& name, const QString& refusal) const;

private:
    void setFocus(NodeIndex node);
    void showFocus();
    void setFilter(MapFilter filter);
    void followComparison();
    void updateLegend();
    void followSelection();
    void leaveFolder(NodeIndex folder);
    QString nameOf(NodeIndex node) const;
    QString rootName() const;

    const AppEnvironment& environment_;
    const PathCanonicalizer& canonicalizer_;
    std::shared_ptr<const FileTree> tree_;
    std::optional<Coverage> coverage_;
    NodeIndex focus_ = 0;
    std::string focusPath_; ///< where to return to in the next tree
    std::vector<NodeIndex> back_;
    std::vector<NodeIndex> forward_;
    std::optional<NodeIndex> selected_;
    MapCrumbsModel crumbs_;
    MapListFlow list_;
    MapLegendModel legend_;
    MapFilter filter_;
    bool isByChange_ = false;
    unsigned changesShown_ = 0;
    std::shared_ptr<const ComparedScans> compared_;
    std::optional<std::uint64_t>
        extensionBytes_; ///< what the chosen extension takes up in the focus, once known
    QString contents_;
    MapTicking ticking_;
    LatestJob legendJob_{"orbel.kinds"};
    LatestJob contentsJob_{"orbel.contents"};
};

} // namespace orbel
