#pragma once

#include "AppModel/KeptScanSettings.h"
#include "AppModel/LatestJob.h"
#include "AppModel/Notice.h"
#include "AppModel/ScanFlow.h"
#include "Models/GrowthModel.h"

#include <memory>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace orbel {

/// What changed since an earlier scan of the same folder. Belongs to the AppModel; used on the main thread,
/// while scans are read, compared and kept on a thread of its own.
///
/// A complete scan is compared with the newest kept one as soon as it has ended, and then kept itself. What
/// is moved or measured again afterwards changes the tree, and the rows follow it.
class CompareFlow final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the AppModel.")
    /// The folders that grew most.
    Q_PROPERTY(orbel::GrowthModel* growth READ growth CONSTANT)

public:
    /// The arguments outlive this.
    CompareFlow(const AppEnvironment& environment, const ScanFlow& scan, const KeptScanSettings& keeping,
                Notice& notice);

    GrowthModel* growth() { return &growth_; }
    bool isBusy() const { return job_.isRunning(); }

private:
    void begin();
    void take(GrowthModel::Content content);
    void clear();
    void follow();

    const AppEnvironment& environment_;
    const ScanFlow& scan_;
    const KeptScanSettings& keeping_;
    Notice& notice_;
    std::shared_ptr<const FileTree> tree_; ///< whose nodes the rows are; null without rows
    GrowthModel growth_;
    LatestJob job_{"orbel.compare"};
};

} // namespace orbel
