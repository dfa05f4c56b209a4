#include "AppModel/AlertSettings.h"

#include "Models/ByteFigure.h"
#include "Models/Wording.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace orbel {

namespace {

const QString alertKey = QStringLiteral("lowDiskAlert");

} // namespace

AlertSettings::AlertSettings(const AppEnvironment& environment, const DiskState& disk, Notice& notice)
    : environment_(environment),
      disk_(disk),
      notice_(notice),
      lowDisk_(loadLowDiskSettings(*environment.settings)) {
    connect(&disk, &DiskState::volumeChanged, this, &AlertSettings::changed);
    if (environment.tray)
        connect(environment.tray.get(), &Tray::availableChanged, this, &AlertSettings::changed);
    alertTimer_.setInterval(LowDiskAlert::checkInterval);
    connect(&alertTimer_, &QTimer::timeout, this, &AlertSettings::checkFreeSpace);
    restartAlertLoop();
}

LowDiskSettings AlertSettings::loadLowDiskSettings(const QSettings& settings) {
    return LowDiskSettings::fromText(settings.value(alertKey).toString().toStdString());
}

void AlertSettings::saveLowDisk() {
    const nlohmann::json json = lowDisk_;
    environment_.settings->setValue(alertKey, QString::fromStdString(json.dump()));
    Q_EMIT changed();
}

void AlertSettings::setEnabled(bool enabled) {
    if (enabled == lowDisk_.enabled)
        return;
    lowDisk_.enabled = enabled;
    saveLowDisk();
    restartAlertLoop();
    if (enabled)
        environment_.notifier->requestPermission([](bool) {});
}

QStringList AlertSettings::thresholds() const {
    QStringList labels;
    for (const auto& choice : LowDiskSettings::thresholds)
        labels << textOf(choice.label);
    return labels;
}

int AlertSettings::choice() const {
    const auto& choices = LowDiskSettings::thresholds;
    const auto found = std::ranges::find(choices, lowDisk_.threshold, &LowDiskSettings::Choice::bytes);
    return found == choices.end() ? -1 : static_cast<int>(found - choices.begin());
}

void AlertSettings::setChoice(int choice) {
    const auto index = static_cast<std::size_t>(choice);
    if (choice == AlertSettings::choice() || choice < 0 || index >= LowDiskSettings::thresholds.size())
        return;
    lowDisk_.threshold = LowDiskSettings::thresholds.at(index).bytes;
    saveLowDisk();
}

QString AlertSettings::explanation() const {
    return environment_.tray && environment_.tray->isAvailable()
               ? tr("Checks every 5 minutes while Vanto is open, even with its window closed. It only "
                    "informs; it "
                    "never deletes anything.")
               : tr("Checks every 5 minutes while its window is open, minimised or not. Closing the window "
                    "ends Vanto: "
                    "this desktop has no place for its icon. It only informs; it never deletes anything.");
}

QString AlertSettings::sampleBody() const {
    const auto& volume = disk_.volume();
    const auto free = volume ? volume->free : lowDisk_.threshold;
    return ByteFigure(free).in(textOf(LowDiskAlert::message(free).body));
}

void AlertSettings::restartAlertLoop() {
    alertTimer_.stop();
    if (!lowDisk_.enabled)
        return;
    checkFreeSpace();
    alertTimer_.start();
}

void AlertSettings::checkFreeSpace() {
    const auto volume = environment_.readVolume(environment_.dataVolumePath);
    if (!volume)
        return;
    auto message = lowDiskAlert_.evaluate(volume->free, lowDisk_, environment_.now());
    if (!message)
        return;
    message->body = ByteFigure(volume->free).in(textOf(message->body)).toStdString();
    environment_.notifier->post(*message);
}

void AlertSettings::setOpenAtLogin(bool opens) {
    if (opens == opensAtLogin())
        return;
    if (!environment_.loginItem->setEnabled(opens))
        notice_.show(tr("The desktop’s list of what it starts at login could not be written."));
    Q_EMIT changed();
}

} // namespace orbel
