#pragma once

#include "AppModel/LatestJob.h"
#include "AppModel/Notice.h"
#include "AppModel/ScanFlow.h"
#include "Saved/ScanFile.h"

#include <expected>
#include <QObject>
#include <QtQml/qqmlregistration.h>
#include <QUrl>
#include <string>

namespace orbel {

/// Scans that were kept, shown in place of a new one. Belongs to the AppModel; used on the main thread, while
/// files are read on threads of their own.
///
/// What was shown before stays until one has been read whole. What measures or moves meanwhile counts more,
/// and ends the reading.
class KeptScanFlow final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the AppModel.")
    /// The last scan is being read, and there is nothing else to show.
    Q_PROPERTY(bool opening READ isOpeningLast NOTIFY openingChanged)

public:
    /// The arguments outlive this. Opens the file of the command line, unless that measures as well; where it
    /// asks for nothing, the last scan of what was measured last, if that was kept.
    KeptScanFlow(const AppEnvironment& environment, ScanFlow& scan, const DiskState& disk,
                 const Activity& activity, Notice& notice);

    /// Shows the scan in a file as one that was made elsewhere. Says so where the file is none or is damaged,
    /// and while something is measured or moved.
    void open(const std::string& path);
    Q_INVOKABLE void openFile(const QUrl& file);

    /// The scan in a file; not for the main thread. The error is in words for people, `home` in it as "~".
    static std::expected<KeptScan, QString> read(const std::string& path, const std::string& home);

    bool isOpeningLast() const { return isOpeningLast_; }

Q_SIGNALS:
    void openingChanged();
    /// The last scan is shown.
    void lastOpened();
    /// A file could not be shown; a notice has these words.
    void failed(const QString& words);

private:
    void openLast();
    void setOpeningLast(bool opening);

    const AppEnvironment& environment_;
    ScanFlow& scan_;
    const DiskState& disk_;
    const Activity& activity_;
    Notice& notice_;
    bool isOpeningLast_ = false;
    LatestJob job_{"orbel.open-scan"};
};

} // namespace orbel
