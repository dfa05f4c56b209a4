#pragma once

#include <QObject>
#include <QtQml/qqml.h>
#include <QtQml/qqmlregistration.h>

class QKeyEvent;

namespace orbel {

/// The keys that click a control, the same on every desktop; attached to each one that can have the focus.
/// Left alone, Qt's buttons ask the platform theme, so Enter clicks them on some desktops and not on others.
///
/// A key clicks when it is released. Held down, it clicks once; pressed elsewhere and released here, never.
class ButtonKeys : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Attached to a control.")
    QML_ATTACHED(orbel::ButtonKeys)
    /// Enter does what Space does. Otherwise the control leaves Enter to the items that it lies in.
    Q_PROPERTY(bool enterClicks MEMBER enterClicks_ FINAL)

public:
    /// Belongs to `control`.
    explicit ButtonKeys(QObject* control);

    static ButtonKeys* qmlAttachedProperties(QObject* control) { return new ButtonKeys(control); }

    bool eventFilter(QObject* control, QEvent* event) override;

private:
    bool takes(QObject& control, QKeyEvent& key);

    bool enterClicks_ = true;
    bool isDown_ = false; ///< a key that clicks was pressed here, and is not released yet
};

} // namespace orbel
