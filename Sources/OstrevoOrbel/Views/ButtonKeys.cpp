#include "Views/ButtonKeys.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <utility>

namespace orbel {

ButtonKeys::ButtonKeys(QObject* control) : QObject(control) {
    control->installEventFilter(this);
}

bool ButtonKeys::eventFilter(QObject* control, QEvent* event) {
    switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        return takes(*control, static_cast<QKeyEvent&>(*event));
    case QEvent::FocusOut:
        isDown_ = false;
        return false;
    default:
        return false;
    }
}

/// Whether the control itself must not see the key. What is ignored as well goes on to its parents.
bool ButtonKeys::takes(QObject& control, QKeyEvent& key) {
    const bool isEnter = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter
                         || key.key() == Qt::Key_Select; // of remote controls
    if (!isEnter && key.key() != Qt::Key_Space)
        return false;
    key.setAccepted(!isEnter || enterClicks_);
    if (key.isAutoRepeat() || !key.isAccepted())
        return true;
    if (isEnter) {
        // Space clicks Qt's controls under every theme. It comes back here first.
        QKeyEvent asSpace(key.type(), Qt::Key_Space, key.modifiers());
        QCoreApplication::sendEvent(&control, &asSpace);
        return true;
    }
    if (key.type() == QEvent::KeyRelease)
        return !std::exchange(isDown_, false);
    isDown_ = true;
    return false;
}

} // namespace orbel
