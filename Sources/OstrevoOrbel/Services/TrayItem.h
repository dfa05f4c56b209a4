#pragma once

#include "Ports/Tray.h"

#include <QDBusConnection>
#include <QObject>

namespace orbel {

/// The application's place among the desktop's status icons (org.kde.StatusNotifierItem, which panels of
/// several desktops show). It is there while `setWanted(true)` holds and the desktop has a place for it.
class TrayItem final : public Tray {
    Q_OBJECT

public:
    explicit TrayItem(QDBusConnection bus);
    ~TrayItem() override;

    /// Some panel takes icons. Not known at once: false at first.
    bool isAvailable() const override { return isAvailable_; }
    void setWanted(bool wanted);
    /// The desktop has taken it.
    bool isShown() const { return isShown_; }

Q_SIGNALS:
    /// The user clicked it.
    void activated();

private:
    void lookForPanel();
    void setAvailable(bool available);
    void announce();
    void withdraw();

    QDBusConnection bus_;
    QString name_;
    bool isAvailable_ = false;
    bool isWanted_ = false;
    bool isShown_ = false;
};

/// What panels read and call. Each word is the interface's own.
class StatusNotifierItem final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category CONSTANT)
    Q_PROPERTY(QString Id READ id CONSTANT)
    Q_PROPERTY(QString Title READ title CONSTANT)
    Q_PROPERTY(QString Status READ status CONSTANT)
    Q_PROPERTY(QString IconName READ id CONSTANT)
    Q_PROPERTY(bool ItemIsMenu READ isMenu CONSTANT)

public:
    explicit StatusNotifierItem(TrayItem& item);

    QString category() const { return QStringLiteral("ApplicationStatus"); }
    QString id() const;
    QString title() const { return QStringLiteral("Ostrevo Vanto"); }
    QString status() const { return QStringLiteral("Active"); }
    bool isMenu() const { return false; }

public Q_SLOTS:
    // NOLINTBEGIN(readability-identifier-naming): called by these names over the bus
    void Activate(int x, int y);
    void SecondaryActivate(int x, int y);
    void ContextMenu(int x, int y);
    // NOLINTEND(readability-identifier-naming)

private:
    TrayItem& item_;
};

} // namespace orbel
