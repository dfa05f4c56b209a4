#pragma once

#include "Ports/Appearance.h"

#include <QDBusConnection>

class QDBusVariant;

namespace orbel {

/// Whether the desktop prefers dark windows: what its portal says and keeps saying, else how dark the palette
/// is that the platform gave.
class SystemAppearance final : public Appearance {
    Q_OBJECT

public:
    explicit SystemAppearance(QDBusConnection bus);

    bool isDark() const override { return isDark_; }

private Q_SLOTS:
    void takeSetting(const QString& group, const QString& key, const QDBusVariant& value);

private:
    void takeScheme(uint scheme);

    QDBusConnection bus_;
    const bool isPaletteDark_; ///< the platform's own: later the palette is the window's
    bool isDark_;
};

} // namespace orbel
