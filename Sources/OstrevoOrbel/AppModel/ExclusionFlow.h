#pragma once

#include "AppModel/LatestJob.h"
#include "AppModel/MoveFlow.h"
#include "AppModel/RescanFlow.h"
#include "AppModel/TreeEdits.h"
#include "Models/GadgetListModel.h"
#include "Models/MapWords.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>
#include <QUrl>
#include <set>
#include <string>
#include <vector>

namespace orbel {

/// A folder that is left out of measuring. A plain value.
struct ExcludedFolder {
    Q_GADGET
    /// For people: "~/Archive".
    Q_PROPERTY(QString path MEMBER path)

public:
    QString path;
    std::string place{}; ///< absolute

    bool operator==(const ExcludedFolder&) const = default;
};

/// The folders that are left out of measuring: which they are, and that the tree that is shown keeps to them.
/// A folder that is added leaves the tree's totals without a scan; one that is taken out again is measured by
/// itself. Belongs to the AppModel; used on the main thread.
class ExclusionFlow final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the AppModel.")
    Q_PROPERTY(orbel::RoleList* folders READ folders CONSTANT)
    Q_PROPERTY(bool any READ isAny NOTIFY changed)

    // What was left out of the tree that is shown; empty when nothing was.

    /// "1 folder left out"
    Q_PROPERTY(QString leftOutText READ leftOutText NOTIFY leftOutChanged)
    /// "~/Archive was left out", "~/Archive and 2 more were left out"
    Q_PROPERTY(QString leftOutSentence READ leftOutSentence NOTIFY leftOutChanged)

public:
    /// The arguments outlive this.
    ExclusionFlow(const AppEnvironment& environment, ScanFlow& scan, TreeEdits& edits, RescanFlow& rescan,
                  MoveFlow& moves, const Activity& activity, Notice& notice);

    // Intents.

    /// Leaves this folder of the shown tree out; a notice says so and can undo it. What is ticked in it or
    /// holds it is no longer ticked. Not for the root.
    void exclude(quint32 node);
    /// Measures a folder of the shown tree again that was left out.
    void include(quint32 node);
    /// The folder of a row.
    Q_INVOKABLE void remove(int row);
    /// Adds any folder. Says why where that is not one that can be left out.
    Q_INVOKABLE void addFolder(const QUrl& folder);

    GadgetListModel<ExcludedFolder>* folders() { return &folders_; }
    bool isAny() const { return !folders_.rows().empty(); }
    QString leftOutText() const { return orbel::leftOutText(*scan_.tree()); }
    QString leftOutSentence() const;

Q_SIGNALS:
    /// Other folders are left out.
    void changed();
    void leftOutChanged();

private:
    void add(const std::string& path);
    void takeOut(const std::string& path);
    void update(const std::string& path);
    void followTree();
    void reconcile();
    QString shown(const std::string& path) const;

    const AppEnvironment& environment_;
    ScanFlow& scan_;
    TreeEdits& edits_;
    RescanFlow& rescan_;
    MoveFlow& moves_;
    const Activity& activity_;
    Notice& notice_;
    GadgetListModel<ExcludedFolder> folders_;
    std::vector<std::string> leftOut_; ///< of the shown tree, ascending
    std::set<std::string> tried_;      ///< measured since the tree or the folders changed
    LatestJob adding_{"orbel.exclude"};
};

} // namespace orbel
