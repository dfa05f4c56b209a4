#include "AppModel/AppModel.h"
#include "Models/Wording.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace orbel {

namespace {

const QString settingsKey = QStringLiteral("lowDiskAlert");

} // namespace

LowDiskSettings AppModel::loadLowDiskSettings(const QSettings& settings) {
    return LowDiskSettings::fromText(settings.value(settingsKey).toString().toStdString());
}

void AppModel::saveLowDisk() {
    const nlohmann::json json = lowDisk_;
    environment_.settings->setValue(settingsKey, QString::fromStdString(json.dump()));
    Q_EMIT lowDiskChanged();
}

void AppModel::setLowDiskEnabled(bool enabled) {
    if (enabled == lowDisk_.enabled)
        return;
    lowDisk_.enabled = enabled;
    saveLowDisk();
    restartAlertLoop();
    if (enabled)
        environment_.notifier->requestPermission([](bool) {});
}

void AppModel::setLowDiskThreshold(quint64 bytes) {
    if (bytes == lowDisk_.threshold)
        return;
    lowDisk_.threshold = bytes;
    saveLowDisk();
}

QStringList AppModel::lowDiskThresholds() const {
    QStringList labels;
    for (const auto& choice : LowDiskSettings::thresholds)
        labels << textOf(choice.label);
    return labels;
}

int AppModel::lowDiskChoice() const {
    const auto found =
        std::ranges::find(LowDiskSettings::thresholds, lowDisk_.threshold, &LowDiskSettings::Choice::bytes);
    return found == LowDiskSettings::thresholds.end()
               ? -1
               : static_cast<int>(found - LowDiskSettings::thresholds.begin());
}

void AppModel::setLowDiskChoice(int choice) {
    const auto index = static_cast<std::size_t>(choice);
    if (choice >= 0 && index < LowDiskSettings::thresholds.size())
        setLowDiskThreshold(LowDiskSettings::thresholds.at(index).bytes);
}

QString AppModel::sampleTitle() const {
    return textOf(LowDiskAlert::message(0).title);
}

QString AppModel::sampleBody() const {
    return textOf(LowDiskAlert::message(volume_ ? volume_->free : lowDisk_.threshold).body);
}

void AppModel::restartAlertLoop() {
    alertTimer_.stop();
    if (!lowDisk_.enabled)
        return;
    checkFreeSpace();
    alertTimer_.start();
}

void AppModel::checkFreeSpace() {
    const auto volume = environment_.readVolume(environment_.dataVolumePath);
    if (!volume)
        return;
    if (const auto message = lowDiskAlert_.evaluate(volume->free, lowDisk_, environment_.now()))
        environment_.notifier->post(*message);
}

} // namespace orbel
