#pragma once

#include <QDBusConnection>
#include <QObject>

class QDBusVariant;

namespace orbel {

/// Whether the desktop prefers dark windows: what its portal says and keeps saying, else how dark the palette
/// is that the platform gave.
class SystemAppearance final : public QObject {
    Q_OBJECT

public:
    explicit SystemAppearance(QDBusConnection bus);

    bool isDark() const { return isDark_; }

Q_SIGNALS:
    void darkChanged(bool dark);

private Q_SLOTS:
    void takeSetting(const QString& group, const QString& key, const QDBusVariant& value);

private:
    void takeScheme(uint scheme);

    QDBusConnection bus_;
    bool isDark_;
};

} // namespace orbel
