#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace orbel {

/// What the user can do about a refusal, for tooltips and rows.
class RefusalAdvice : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    /// One sentence; empty where there is none.
    Q_INVOKABLE static QString on(const QString& reason);
    /// The reason, and the advice on a line of its own where there is one.
    Q_INVOKABLE static QString after(const QString& reason);
};

} // namespace orbel
