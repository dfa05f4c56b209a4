#pragma once

#include "AppModel/LatestJob.h"
#include "AppModel/MoveFlow.h"
#include "AppModel/TickAll.h"
#include "Find/BrokenShortcutFinder.h"
#include "Find/EmptyFolderFinder.h"
#include "Find/RebuildableFinder.h"
#include "Models/TidyListModel.h"
#include "Safety/SafetyPolicy.h"

#include <array>
#include <cstdint>
#include <memory>
#include <QObject>
#include <QStringList>
#include <QtQml/qqmlregistration.h>
#include <string>
#include <vector>

namespace orbel {

/// The rebuildable folders, the empty ones and the broken shortcuts. Belongs to the AppModel; used on the
/// main thread, while what takes long runs on threads of its own.
///
/// The lists are made anew whenever there is another tree and the screen is shown: the finders ask the disk
/// about every row. After a scan that was stopped no folder is called rebuildable or empty, since what it
/// holds may not have been seen yet.
class TidyFlow final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the AppModel.")
    /// "13"; empty until known.
    Q_PROPERTY(QString countText READ countText NOTIFY changed)
    /// "12.4 GB rebuildable, 11 empty folders, 2 broken shortcuts"; empty until known.
    Q_PROPERTY(QString summary READ summary NOTIFY changed)
    Q_PROPERTY(bool running READ tidyRunning NOTIFY changed)
    /// The lists are of some tree.
    Q_PROPERTY(bool known READ isKnown NOTIFY changed)
    Q_PROPERTY(orbel::TidyListModel* rebuildable READ rebuildable CONSTANT)
    Q_PROPERTY(orbel::TidyListModel* folders READ folders CONSTANT)
    Q_PROPERTY(orbel::TidyListModel* shortcuts READ shortcuts CONSTANT)
    /// "12 folders · 12.4 GB"
    Q_PROPERTY(QString rebuildableText READ rebuildableText NOTIFY changed)
    /// "8 topmost folders, 12 with those inside"
    Q_PROPERTY(QString foldersText READ foldersText NOTIFY changed)
    /// "6 found: 3 missing, 1 unknown, 2 intentional"
    Q_PROPERTY(QString shortcutsText READ shortcutsText NOTIFY changed)
    /// "3 ticked · 2.1 GB"
    Q_PROPERTY(QString rebuildableTicked READ rebuildableTicked NOTIFY changed)
    /// "7 ticked, 11 with those inside"
    Q_PROPERTY(QString foldersTicked READ foldersTicked NOTIFY changed)
    Q_PROPERTY(QString shortcutsTicked READ shortcutsTicked NOTIFY changed)
    /// "Move 3 folders to the Trash"
    Q_PROPERTY(QString moveRebuildableText READ moveRebuildableText NOTIFY changed)
    /// "Move 7 empty folders to the Trash": the topmost, as the confirmation counts them.
    Q_PROPERTY(QString moveFoldersText READ moveFoldersText NOTIFY changed)
    Q_PROPERTY(QString moveShortcutsText READ moveShortcutsText NOTIFY changed)
    /// What a path has to hold for its row to be shown.
    Q_PROPERTY(QString filter READ filter WRITE setFilter NOTIFY changed)
    /// Filters of the rebuildable folders alone: what there is to choose from, and which of it is chosen.
    Q_PROPERTY(QStringList programs READ programs NOTIFY changed)
    Q_PROPERTY(int program READ program WRITE setProgram NOTIFY changed)
    Q_PROPERTY(QStringList ages READ ages CONSTANT)
    Q_PROPERTY(int age READ age WRITE setAge NOTIFY changed)

public:
    /// The references outlive this.
    TidyFlow(const AppEnvironment& environment, std::shared_ptr<const SafetyPolicy> policy,
             const ScanFlow& scan, MoveFlow& moves, const ShownScreen& shown);

    // Intents. Rows are those of the given list; what is out of their range changes nothing.

    /// Makes the lists anew, whatever tree they are of.
    Q_INVOKABLE void lookAgain();
    Q_INVOKABLE void toggleTick(orbel::TidyListModel* list, int row);
    /// Ticks all rows that are shown and may move, or unticks all there are.
    Q_INVOKABLE void setAllTicked(orbel::TidyListModel* list, bool ticked);
    /// Asks for a confirmation of what is ticked in a list.
    Q_INVOKABLE void review(orbel::TidyListModel* list);

    // State.

    const std::vector<EmptyFolderFinder::Row>& emptyFolderRows() const { return emptyFolderRows_; }
    const std::vector<BrokenShortcutFinder::Row>& brokenShortcutRows() const { return brokenShortcutRows_; }
    bool tidyRunning() const { return job_.isRunning(); }
    /// Of the tree that the lists were made from; -1 before the first.
    int tidyVersion() const { return tidyVersion_; }
    bool isKnown() const { return tidyVersion_ >= 0; }
    TidyListModel* rebuildable() { return &model(Rebuildable); }
    TidyListModel* folders() { return &model(Folders); }
    TidyListModel* shortcuts() { return &model(Shortcuts); }
    QString countText() const;
    QString summary() const;
    bool isBusy() const { return tidyRunning(); }
    QString rebuildableText() const;
    QString foldersText() const;
    QString shortcutsText() const;
    QString rebuildableTicked() const;
    QString foldersTicked() const;
    QString shortcutsTicked() const;
    QString moveRebuildableText() const;
    QString moveFoldersText() const;
    QString moveShortcutsText() const;
    QStringList programs() const { return QStringList(tr("All programs")) + programs_; }
    int program() const;
    void setProgram(int choice);
    QStringList ages() const;
    int age() const { return age_; }
    void setAge(int choice);
    QString filter() const { return filter_; }
    void setFilter(const QString& text);

Q_SIGNALS:
    void changed();

private:
    struct Found {
        std::vector<EmptyFolderFinder::Row> folders;
        std::vector<BrokenShortcutFinder::Row> shortcuts;
        std::array<TidyListModel::Rows, 3> rows;
        std::array<std::unique_ptr<Ticks::Content>, 3> ticked;
    };
    enum Kind : std::uint8_t { Rebuildable, Folders, Shortcuts };
    struct List {
        TidyListModel model;
        TickAll ticking{model.ticks()};
    };
    using Choices = std::array<TidyListModel::Choices, 3>;

    void takeTree();
    void refreshIfShown();
    void refresh();
    void take(int version, Found found, const Choices& choices);
    void filterRebuildable();
    void drop(const std::vector<std::string>& paths);
    void clear();
    TidyListModel& model(Kind kind) { return lists_.at(kind).model; }
    const TidyListModel& model(Kind kind) const { return lists_.at(kind).model; }

    const AppEnvironment& environment_;
    std::shared_ptr<const SafetyPolicy> policy_;
    const ScanFlow& scan_;
    MoveFlow& moves_;
    const ShownScreen& shown_;
    EmptyFolderFinder emptyFolderFinder_;
    std::vector<EmptyFolderFinder::Row> emptyFolderRows_;
    std::vector<BrokenShortcutFinder::Row> brokenShortcutRows_;
    int tidyVersion_ = -1;
    QString filter_;
    QString program_; ///< empty for all
    int age_ = 0;
    QStringList programs_; ///< of the rebuildable folders, those that most would come free of first
    std::array<List, 3> lists_;
    LatestJob job_{"orbel.tidy"};
};

} // namespace orbel
