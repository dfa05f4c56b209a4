#pragma once

#include "AppModel/LatestJob.h"
#include "AppModel/ScanFlow.h"
#include "Models/GadgetListModel.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>
#include <string>
#include <vector>

namespace orbel {

/// A folder that was measured before. A plain value.
struct RecentFolder {
    Q_GADGET
    /// For people: "~/Videos".
    Q_PROPERTY(QString path MEMBER path)

public:
    QString path;
    std::string root{};

    bool operator==(const RecentFolder&) const = default;
};

/// The folders that were measured last and are still there. Belongs to the AppModel; used on the main thread.
class RecentFolders final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the AppModel.")
    Q_PROPERTY(orbel::RoleList* list READ list CONSTANT)
    Q_PROPERTY(bool any READ isAny NOTIFY changed)

public:
    /// The references outlive this.
    RecentFolders(const AppEnvironment& environment, ScanFlow& scan);

    /// Measures the folder of a row.
    Q_INVOKABLE void measure(int row);
    Q_INVOKABLE void clear();
    /// Looks again which of them are there; the disk is asked on a thread of its own.
    Q_INVOKABLE void refresh();

    GadgetListModel<RecentFolder>* list() { return &list_; }
    bool isAny() const { return !list_.rows().empty(); }

Q_SIGNALS:
    void changed();

private:
    void take(std::vector<RecentFolder> folders);

    const AppEnvironment& environment_;
    ScanFlow& scan_;
    GadgetListModel<RecentFolder> list_;
    LatestJob job_{"orbel.recent"};
};

} // namespace orbel
