#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace orbel {

/// What went wrong or has to be known, above every screen until it is dismissed. Used on the main thread.
class Notice : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the AppModel.")
    /// Empty when there is nothing.
    Q_PROPERTY(QString text READ text NOTIFY changed)

public:
    QString text() const { return text_; }
    void show(const QString& words) {
        if (words == text_)
            return;
        text_ = words;
        Q_EMIT changed();
    }
    Q_INVOKABLE void dismiss() { show({}); }

Q_SIGNALS:
    void changed();

private:
    QString text_;
};

} // namespace orbel
