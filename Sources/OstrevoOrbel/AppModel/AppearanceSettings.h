#pragma once

#include "AppModel/AppEnvironment.h"

#include <optional>
#include <QObject>
#include <QtQml/qqmlregistration.h>
#include <string>

namespace orbel {

/// Light or dark: what the user chose, else what the command line said, else what the desktop prefers. Motion
/// and contrast are the desktop's alone.
class AppearanceSettings final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the AppModel.")
    /// "system", "light" or "dark"; kept.
    Q_PROPERTY(QString choice READ choice WRITE setChoice NOTIFY choiceChanged)
    /// What that comes to now.
    Q_PROPERTY(bool dark READ isDark NOTIFY darkChanged)
    Q_PROPERTY(bool reducedMotion READ isMotionReduced NOTIFY desktopChanged)
    Q_PROPERTY(bool highContrast READ isContrastHigh NOTIFY desktopChanged)

public:
    /// Keeps the choice in the settings, under "appearance", and follows the desktop.
    /// `environment` outlives this.
    explicit AppearanceSettings(const AppEnvironment& environment);

    QString choice() const { return choice_; }
    void setChoice(const QString& choice);
    bool isDark() const { return isDark_; }
    /// As the desktop has them.
    bool isMotionReduced() const;
    bool isContrastHigh() const;

    /// For this run, whatever was chosen: the command line's --appearance. A choice made later wins.
    void overrideWith(std::optional<std::string> word);

Q_SIGNALS:
    void choiceChanged();
    void darkChanged();
    void desktopChanged();

private:
    void update();

    const AppEnvironment& environment_;
    QString choice_;
    std::optional<bool> override_;
    bool isDark_ = false;
};

} // namespace orbel
