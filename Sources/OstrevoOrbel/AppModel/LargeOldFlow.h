#pragma once

#include "AppModel/LatestJob.h"
#include "AppModel/MoveFlow.h"
#include "AppModel/TickAll.h"
#include "Find/LargeOldQuery.h"
#include "Models/LargeOldList.h"
#include "Models/LargeOldModel.h"
#include "Models/Ticks.h"

#include <memory>
#include <QObject>
#include <QStringList>
#include <QtQml/qqmlregistration.h>
#include <string>
#include <vector>

namespace orbel {

/// The large and old files: the filter, the rows it leaves, and what is ticked of them. Belongs to
/// the AppModel; used on the main thread, while what takes long runs on threads of its own.
///
/// The rows follow the tree: whenever there is another one, and whenever the filter changes, they are looked
/// for again, and what was under way is cancelled and dropped. Until the new rows are there the old ones
/// stay, except when a scan begins.
class LargeOldFlow final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the AppModel.")
    /// "86"; empty until known.
    Q_PROPERTY(QString countText READ countText NOTIFY changed)
    /// "86 files · 120.4 GB"; empty until known.
    Q_PROPERTY(QString summary READ summary NOTIFY changed)

    Q_PROPERTY(orbel::LargeOldModel* rows READ rows CONSTANT)
    Q_PROPERTY(orbel::Ticks* ticks READ ticks CONSTANT)
    /// Rows are being looked for.
    Q_PROPERTY(bool running READ largeOldRunning NOTIFY changed)
    /// There has been an answer for this scan.
    Q_PROPERTY(bool known READ isKnown NOTIFY changed)
    /// "86 files", "12 of 86 files"; "39 files so far" after a scan that was stopped.
    Q_PROPERTY(QString shownCount READ shownCount NOTIFY changed)
    /// "143.2 GB"
    Q_PROPERTY(QString shownSize READ shownSize NOTIFY changed)

    // The filter: for each part what there is to choose from, and which of it is chosen.

    Q_PROPERTY(QStringList sizes READ sizes CONSTANT)
    Q_PROPERTY(int size READ size WRITE setSize NOTIFY changed)
    Q_PROPERTY(QStringList ages READ ages CONSTANT)
    /// 0: of any age.
    Q_PROPERTY(int age READ age WRITE setAge NOTIFY changed)
    Q_PROPERTY(QStringList kinds READ kinds CONSTANT)
    /// 0: of every kind.
    Q_PROPERTY(int kind READ kind WRITE setKind NOTIFY changed)
    /// What the name or the folder has to contain.
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY changed)

    // The order: a Column, and whether it descends.

    Q_PROPERTY(int column READ column NOTIFY changed)
    Q_PROPERTY(bool descending READ isDescending NOTIFY changed)

public:
    enum Column { Name, Kind, LastUsed, Size };
    Q_ENUM(Column)

    /// The references outlive this.
    LargeOldFlow(const AppEnvironment& environment, std::shared_ptr<const SafetyPolicy> policy,
                 const ScanFlow& scan, MoveFlow& moves);

    // Intents.

    /// Sorts by a column; once more by the same one, the other way round.
    Q_INVOKABLE void sortBy(int column);
    /// Of a row, told by its node in the tree that the rows are of, which may be another one than is shown
    /// elsewhere by now. What is in no row changes nothing.
    Q_INVOKABLE void toggleTick(quint32 node);
    /// Ticks all rows that are shown and may move.
    Q_INVOKABLE void tickAll();

    // State.

    const LargeOldQuery& largeOldQuery() const { return query_; }
    void setLargeOldQuery(LargeOldQuery query);
    /// As the last look found them, the largest first; what has moved since then is among them.
    const std::vector<LargeOldQuery::Row>& largeOldRows() const { return list_->rows(); }
    bool largeOldRunning() const { return finding_.isRunning(); }
    /// The version of the tree that the rows are of; -1 when there are none.
    int largeOldVersion() const { return version_; }

    QString countText() const;
    QString summary() const;
    bool isBusy() const { return largeOldRunning(); }
    LargeOldModel* rows() { return &model_; }
    Ticks* ticks() { return &ticks_; }
    bool isKnown() const { return isKnown_; }
    QString shownCount() const;
    QString shownSize() const;
    QStringList sizes() const;
    int size() const;
    void setSize(int choice);
    QStringList ages() const;
    int age() const;
    void setAge(int choice);
    QStringList kinds() const;
    int kind() const;
    void setKind(int choice);
    QString text() const;
    void setText(const QString& text);
    int column() const { return static_cast<int>(arrangement_.column); }
    bool isDescending() const { return arrangement_.descending; }

Q_SIGNALS:
    void changed();

private:
    struct Found {
        std::shared_ptr<const LargeOldList> list;
        LargeOldArrangement arrangement;
        LargeOldOrder order;
    };

    void followTree();
    void refresh();
    void take(Found found, int version);
    void arrange();
    void show(LargeOldOrder order);
    void dropMoved(const std::vector<std::string>& moved);
    std::size_t count() const;
    QString countedFiles() const;

    const AppEnvironment& environment_;
    std::shared_ptr<const SafetyPolicy> policy_;
    const ScanFlow& scan_;
    LargeOldQuery query_;
    LargeOldArrangement arrangement_;
    std::shared_ptr<const LargeOldList> list_;
    std::uint64_t bytes_ = 0; ///< of all rows, whatever the text hides
    int version_ = -1;
    bool isKnown_ = false;
    Ticks ticks_;
    TickAll tickingAll_{ticks_};
    LargeOldModel model_;
    LatestJob finding_{"orbel.large-old"};
    LatestJob arranging_{"orbel.arrange"};
};

} // namespace orbel
