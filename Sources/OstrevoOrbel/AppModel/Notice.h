#pragma once

#include <functional>
#include <QObject>
#include <QtQml/qqmlregistration.h>
#include <utility>

namespace orbel {

/// What went wrong or has to be known, above every screen until it is dismissed. Used on the main thread.
class Notice : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the AppModel.")
    /// Empty when there is nothing.
    Q_PROPERTY(QString text READ text NOTIFY changed)
    /// What can be done about it: "Undo". Empty when nothing can.
    Q_PROPERTY(QString action READ action NOTIFY changed)

public:
    QString text() const { return text_; }
    QString action() const { return action_; }
    /// `then` is what the action does.
    void show(const QString& words, const QString& action = {}, std::function<void()> then = {}) {
        then_ = std::move(then);
        if (words == text_ && action == action_)
            return;
        text_ = words;
        action_ = action;
        Q_EMIT changed();
    }
    Q_INVOKABLE void dismiss() { show({}); }
    /// Does what the action says, and dismisses it.
    Q_INVOKABLE void act() {
        const auto then = std::exchange(then_, {});
        dismiss();
        if (then)
            then();
    }

Q_SIGNALS:
    void changed();

private:
    QString text_;
    QString action_;
    std::function<void()> then_;
};

} // namespace orbel
