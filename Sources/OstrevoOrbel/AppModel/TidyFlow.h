#pragma once

#include "AppModel/LatestJob.h"
#include "AppModel/MoveFlow.h"
#include "AppModel/TickAll.h"
#include "Find/BrokenShortcutFinder.h"
#include "Find/EmptyFolderFinder.h"
#include "Models/TidyListModel.h"
#include "Safety/SafetyPolicy.h"

#include <memory>
#include <QObject>
#include <QtQml/qqmlregistration.h>
#include <string>
#include <vector>

namespace orbel {

/// The empty folders and the broken shortcuts. Belongs to the AppModel; used on the main thread, while what
/// takes long runs on threads of its own.
///
/// The lists are made anew whenever there is another tree and the screen is shown: the finders ask the disk
/// about every row. After a scan that was stopped no folder is called empty, since what it holds may not have
/// been seen yet.
class TidyFlow final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the AppModel.")
    /// "13"; empty until known.
    Q_PROPERTY(QString countText READ countText NOTIFY changed)
    /// "11 empty folders, 2 broken shortcuts"; empty until known.
    Q_PROPERTY(QString summary READ summary NOTIFY changed)
    Q_PROPERTY(bool running READ tidyRunning NOTIFY changed)
    /// The lists are of some tree.
    Q_PROPERTY(bool known READ isKnown NOTIFY changed)
    Q_PROPERTY(orbel::TidyListModel* folders READ folders CONSTANT)
    Q_PROPERTY(orbel::TidyListModel* shortcuts READ shortcuts CONSTANT)
    /// "8 topmost folders, 12 with those inside"
    Q_PROPERTY(QString foldersText READ foldersText NOTIFY changed)
    /// "6 found: 3 missing, 1 unknown, 2 intentional"
    Q_PROPERTY(QString shortcutsText READ shortcutsText NOTIFY changed)
    /// "7 ticked, 11 with those inside"
    Q_PROPERTY(QString foldersTicked READ foldersTicked NOTIFY changed)
    Q_PROPERTY(QString shortcutsTicked READ shortcutsTicked NOTIFY changed)
    /// "Move 7 empty folders to the Trash": the topmost, as the confirmation counts them.
    Q_PROPERTY(QString moveFoldersText READ moveFoldersText NOTIFY changed)
    Q_PROPERTY(QString moveShortcutsText READ moveShortcutsText NOTIFY changed)
    /// What a path has to hold for its row to be shown.
    Q_PROPERTY(QString filter READ filter WRITE setFilter NOTIFY changed)

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
    TidyListModel* folders() { return &folders_; }
    TidyListModel* shortcuts() { return &shortcuts_; }
    QString countText() const;
    QString summary() const;
    bool isBusy() const { return tidyRunning(); }
    QString foldersText() const;
    QString shortcutsText() const;
    QString foldersTicked() const;
    QString shortcutsTicked() const;
    QString moveFoldersText() const;
    QString moveShortcutsText() const;
    QString filter() const { return filter_; }
    void setFilter(const QString& text);

Q_SIGNALS:
    void changed();

private:
    struct Found {
        std::vector<EmptyFolderFinder::Row> folders;
        std::vector<BrokenShortcutFinder::Row> shortcuts;
        TidyListModel::Rows folderRows;
        TidyListModel::Rows shortcutRows;
        std::unique_ptr<Ticks::Content> tickedFolders;
        std::unique_ptr<Ticks::Content> tickedShortcuts;
    };

    void takeTree();
    void refreshIfShown();
    void refresh();
    void take(int version, Found found, const TidyListModel::Choices& ofFolders,
              const TidyListModel::Choices& ofShortcuts);
    void drop(const std::vector<std::string>& paths);
    void clear();

    const AppEnvironment& environment_;
    std::shared_ptr<const SafetyPolicy> policy_;
    const ScanFlow& scan_;
    MoveFlow& moves_;
    const ShownScreen& shown_;
    EmptyFolderFinder emptyFolderFinder_;
    std::vector<EmptyFolderFinder::Row> emptyFolderRows_;
    std::vector<BrokenShortcutFinder::Row> brokenShortcutRows_;
    TidyListModel folders_;
    TidyListModel shortcuts_;
    int tidyVersion_ = -1;
    QString filter_;
    TickAll tickingFolders_{folders_.ticks()};
    TickAll tickingShortcuts_{shortcuts_.ticks()};
    LatestJob job_{"orbel.tidy"};
};

} // namespace orbel
