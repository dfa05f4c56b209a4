#include "Services/Appearance.h"

#include <QSettings>

namespace orbel {

namespace {

const QString settingsKey = QStringLiteral("appearance");

bool isChoice(const QString& word) {
    return word == QLatin1String("system") || word == QLatin1String("light") || word == QLatin1String("dark");
}

} // namespace

Appearance::Appearance(QSettings& settings, QObject* parent)
    : QObject(parent), settings_(settings), choice_(settings.value(settingsKey).toString()) {
    if (!isChoice(choice_))
        choice_ = QStringLiteral("system");
    update();
}

void Appearance::setChoice(const QString& choice) {
    if (!isChoice(choice) || (choice == choice_ && !override_))
        return;
    choice_ = choice;
    override_.reset();
    settings_.setValue(settingsKey, choice_);
    Q_EMIT choiceChanged();
    update();
}

void Appearance::overrideWith(std::optional<std::string> word) {
    override_.reset();
    if (word)
        override_ = *word == "dark";
    update();
}

void Appearance::setSystemDark(bool dark) {
    systemIsDark_ = dark;
    update();
}

void Appearance::update() {
    const bool dark = override_.value_or(
        choice_ == QLatin1String("system") ? systemIsDark_ : choice_ == QLatin1String("dark"));
    if (dark == isDark_)
        return;
    isDark_ = dark;
    Q_EMIT darkChanged();
}

} // namespace orbel
