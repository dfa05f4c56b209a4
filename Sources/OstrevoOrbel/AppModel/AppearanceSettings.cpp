#include "AppModel/AppearanceSettings.h"

namespace orbel {

namespace {

const QString appearanceKey = QStringLiteral("appearance");

bool isChoice(const QString& word) {
    return word == QLatin1String("system") || word == QLatin1String("light") || word == QLatin1String("dark");
}

} // namespace

AppearanceSettings::AppearanceSettings(const AppEnvironment& environment)
    : environment_(environment), choice_(environment.settings->value(appearanceKey).toString()) {
    if (!isChoice(choice_))
        choice_ = QStringLiteral("system");
    if (environment.appearance) {
        connect(environment.appearance.get(), &Appearance::changed, this, &AppearanceSettings::update);
        connect(environment.appearance.get(), &Appearance::changed, this,
                &AppearanceSettings::desktopChanged);
    }
    update();
}

void AppearanceSettings::setChoice(const QString& choice) {
    if (!isChoice(choice) || (choice == choice_ && !override_))
        return;
    choice_ = choice;
    override_.reset();
    environment_.settings->setValue(appearanceKey, choice_);
    Q_EMIT choiceChanged();
    update();
}

bool AppearanceSettings::isMotionReduced() const {
    return environment_.appearance && environment_.appearance->isMotionReduced();
}

bool AppearanceSettings::isContrastHigh() const {
    return environment_.appearance && environment_.appearance->isContrastHigh();
}

void AppearanceSettings::overrideWith(std::optional<std::string> word) {
    override_.reset();
    if (word)
        override_ = *word == "dark";
    update();
}

void AppearanceSettings::update() {
    const bool isSystemDark = environment_.appearance && environment_.appearance->isDark();
    const bool dark = override_.value_or(
        choice_ == QLatin1String("system") ? isSystemDark : choice_ == QLatin1String("dark"));
    if (dark == isDark_)
        return;
    isDark_ = dark;
    Q_EMIT darkChanged();
}

} // namespace orbel
