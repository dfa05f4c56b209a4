#pragma once

#include "AppModel/LatestJob.h"
#include "AppModel/ScanFlow.h"
#include "Models/FreedPlace.h"
#include "Models/GadgetListModel.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace orbel {

/// What commands of the system's own programs free outside the home. Belongs to the AppModel; used on the
/// main thread, while the looking runs on a thread of its own.
///
/// Looked for once a scan of the whole disk has ended, and emptied when another one starts or is opened.
class SystemPlacesFlow final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the AppModel.")
    Q_PROPERTY(orbel::RoleList* places READ places CONSTANT)

public:
    /// The arguments outlive this.
    SystemPlacesFlow(const AppEnvironment& environment, const ScanFlow& scan);

    GadgetListModel<FreedPlace>* places() { return &places_; }
    bool isBusy() const { return job_.isRunning(); }

private:
    void look();

    const AppEnvironment& environment_;
    const ScanFlow& scan_;
    GadgetListModel<FreedPlace> places_;
    LatestJob job_{"orbel.system"};
};

} // namespace orbel
