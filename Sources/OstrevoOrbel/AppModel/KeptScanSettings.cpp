#include "AppModel/KeptScanSettings.h"

#include "Models/ByteFigure.h"
#include "Models/Wording.h"

#include <utility>

namespace orbel {

namespace {

const QString keepKey = QStringLiteral("keepScans");
const QString measureKey = QStringLiteral("measureAtStart");

} // namespace

KeptScanSettings::KeptScanSettings(const AppEnvironment& environment, Notice& notice)
    : environment_(environment),
      notice_(notice),
      archive_(environment.scansFolder),
      keeps_(environment.settings->value(keepKey, true).toBool()),
      measuresAtStart_(environment.settings->value(measureKey, false).toBool()) {}

void KeptScanSettings::keep() {
    setKeeps(true);
}

void KeptScanSettings::keepNone() {
    setKeeps(false);
    if (environment_.scansFolder.empty())
        return;
    job_.run([archive = archive_] { return archive.clear(); },
             [this](const std::expected<void, std::string>& cleared) {
                 if (!cleared)
                     notice_.show(tr("Not all kept scans could be removed: %1").arg(textOf(cleared.error())));
                 refresh();
             });
}

void KeptScanSettings::refresh() {
    if (environment_.scansFolder.empty())
        return;
    job_.run([archive = archive_] { return archive.size(); },
             [this](const ScanArchive::Size& size) {
                 if (std::exchange(size_, size) != size)
                     Q_EMIT changed();
             });
}

void KeptScanSettings::setKeeps(bool keeps) {
    if (std::exchange(keeps_, keeps) == keeps)
        return;
    environment_.settings->setValue(keepKey, keeps);
    Q_EMIT changed();
}

void KeptScanSettings::setMeasuresAtStart(bool measures) {
    if (std::exchange(measuresAtStart_, measures) == measures)
        return;
    environment_.settings->setValue(measureKey, measures);
    Q_EMIT changed();
}

QString KeptScanSettings::count() const {
    return countOf(size_.scans, tr("kept scan"), tr("kept scans"));
}

QString KeptScanSettings::size() const {
    return ByteFigure(size_.bytes).text();
}

} // namespace orbel
