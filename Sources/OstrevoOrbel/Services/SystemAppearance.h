#pragma once

#include "Ports/Appearance.h"

#include <QDBusConnection>
#include <QFileSystemWatcher>
#include <QHash>
#include <QVariant>

class QDBusVariant;

namespace orbel {

/// What the desktop's portal says and keeps saying. Where it says nothing of something: for dark, how
/// dark the palette is that the platform gave; for motion and contrast, what the settings files of GTK
/// and KDE say.
class SystemAppearance final : public Appearance {
    Q_OBJECT

public:
    /// `configFolder` holds those files, and is watched.
    SystemAppearance(QDBusConnection bus, QString configFolder);

    bool isDark() const override { return isDark_; }
    bool isMotionReduced() const override { return isMotionReduced_; }
    bool isContrastHigh() const override { return isContrastHigh_; }

private Q_SLOTS:
    void takeSetting(const QString& group, const QString& key, const QDBusVariant& value);

private:
    void ask(const QString& group, const QString& key);
    void readFiles();
    void update();
    bool wantsDark() const;
    bool wantsLessMotion() const;
    bool wantsContrast() const;

    QDBusConnection bus_;
    QString configFolder_;
    QFileSystemWatcher files_;
    QHash<QString, QVariant> portal_; ///< what it has said, by group and key
    const bool isPaletteDark_;        ///< the platform's own: later the palette is the window's
    bool isMotionReducedInFiles_ = false;
    bool isContrastHighInFiles_ = false;
    bool isDark_ = false;
    bool isMotionReduced_ = false;
    bool isContrastHigh_ = false;
};

} // namespace orbel
