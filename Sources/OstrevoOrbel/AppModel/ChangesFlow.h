#pragma once

#include "AppModel/CompareFlow.h"
#include "Models/ChangesModel.h"

#include <memory>
#include <QObject>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

namespace orbel {

/// All that changed since an earlier scan: the filter, the order, and the rows. Belongs to the AppModel; used
/// on the main thread, while rows are filtered and sorted on a thread of their own.
///
/// There are rows while the list is shown; then both scans are in memory. They follow the CompareFlow: until
/// those of another comparison are there the old ones stay, except when a scan begins.
class ChangesFlow final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the AppModel.")
    Q_PROPERTY(orbel::ChangesModel* rows READ rows CONSTANT)
    /// Whether the list is on the screen.
    Q_PROPERTY(bool shown READ isShown WRITE setShown NOTIFY changed)
    /// Rows are being compared, filtered or sorted.
    Q_PROPERTY(bool running READ isRunning NOTIFY changed)
    /// The rows of a comparison are there.
    Q_PROPERTY(bool known READ isKnown NOTIFY changed)
    /// There are no changes, not only none that pass the filter.
    Q_PROPERTY(bool unchanged READ isUnchanged NOTIFY changed)
    /// "1,204 changes", "12 of 1,204 changes"; empty until known.
    Q_PROPERTY(QString shownCount READ shownCount NOTIFY changed)
    /// "+5.2 GB in all": by how much what is shown takes more, nothing counted twice. Empty until known.
    Q_PROPERTY(QString shownNet READ shownNet NOTIFY changed)

    // The filter: for each part what there is to choose from, and which of it is chosen; 0 for all.

    Q_PROPERTY(QStringList kinds READ kinds CONSTANT)
    Q_PROPERTY(int kind READ kind WRITE setKind NOTIFY changed)
    Q_PROPERTY(QStringList itemChoices READ itemChoices CONSTANT)
    Q_PROPERTY(int items READ items WRITE setItems NOTIFY changed)
    /// What the name or the folder has to contain.
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY changed)

    // The order: a Column, and whether it descends.

    Q_PROPERTY(int column READ column NOTIFY changed)
    Q_PROPERTY(bool descending READ isDescending NOTIFY changed)

public:
    enum Column { Change, Name, Before, After, Difference };
    Q_ENUM(Column)

    /// The references outlive this.
    ChangesFlow(const AppEnvironment& environment, CompareFlow& compare);

    // Intents.

    /// Sorts by a column; once more by the same one, the other way round.
    Q_INVOKABLE void sortBy(int column);
    Q_INVOKABLE void clearFilter();

    ChangesModel* rows() { return &model_; }
    bool isShown() const { return isShown_; }
    void setShown(bool shown);
    bool isRunning() const { return arranging_.isRunning() || compare_.isBusy(); }
    bool isKnown() const { return scans_ != nullptr; }
    bool isUnchanged() const { return scans_ && scans_->comparison.changes.empty(); }
    QString shownCount() const;
    QString shownNet() const;
    QStringList kinds() const;
    int kind() const;
    void setKind(int choice);
    QStringList itemChoices() const;
    int items() const { return static_cast<int>(arrangement_.items); }
    void setItems(int choice);
    QString text() const;
    void setText(const QString& text);
    int column() const { return static_cast<int>(arrangement_.column); }
    bool isDescending() const { return arrangement_.isDescending; }

Q_SIGNALS:
    void changed();

private:
    void follow();
    void setArrangement(ChangeArrangement arrangement);
    void arrange();

    const AppEnvironment& environment_;
    CompareFlow& compare_;
    bool isShown_ = false;
    ChangeArrangement arrangement_;
    std::shared_ptr<const ComparedScans> scans_; ///< whose rows are shown; null for none
    ChangesModel model_;
    LatestJob arranging_{"orbel.changes"};
};

} // namespace orbel
