#pragma once

#include <QAccessible>
#include <QObject>
#include <QPointer>
#include <QQuickItem>
#include <QtQml/qqml.h>
#include <QtQml/qqmlregistration.h>

namespace orbel {

/// What assistive technology is told of a control, beside what `Accessible` says; attached to it. Buttons,
/// rows and lists speak for themselves: Qt 6.4 gives every control the role of its type, does not say what is
/// disabled or out of sight in a list, has no action for half of the roles, and lists rows in the order in
/// which they were made.
class Spoken : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Attached to a control.")
    QML_ATTACHED(orbel::Spoken)
    /// The name, where it differs from the text of a button: Qt ignores `Accessible.name` of one with a text.
    Q_PROPERTY(QString name MEMBER name_ NOTIFY nameChanged FINAL)
    /// A role of `Accessible`, in place of the one that the type has.
    Q_PROPERTY(int role MEMBER role_ NOTIFY roleChanged FINAL)
    /// The part for which the control has the keyboard's focus, such as the row of a list. It is told of as
    /// what has the focus. Null while the control itself has it.
    Q_PROPERTY(QQuickItem* part READ part WRITE setPart NOTIFY partChanged FINAL)
    /// Whether it opens to show more below it, and whether it is open.
    Q_PROPERTY(bool expandable MEMBER isExpandable_ NOTIFY expandableChanged FINAL)
    Q_PROPERTY(bool expanded MEMBER isExpanded_ NOTIFY expandedChanged FINAL)

public:
    /// Belongs to `control`.
    explicit Spoken(QObject* control);

    static Spoken* qmlAttachedProperties(QObject* control) { return new Spoken(control); }
    /// Null where there is none.
    static const Spoken* of(QObject& control);

    const QString& name() const { return name_; }
    /// 0 for that of the type.
    QAccessible::Role role() const { return static_cast<QAccessible::Role>(role_); }
    QQuickItem* part() const { return part_; }
    void setPart(QQuickItem* part);
    bool isExpandable() const { return isExpandable_; }
    bool isExpanded() const { return isExpanded_; }

Q_SIGNALS:
    void roleChanged();
    void nameChanged();
    void partChanged();
    void expandableChanged();
    void expandedChanged();

private:
    void announceLater();

    QString name_;
    int role_ = 0;
    QPointer<QQuickItem> part_;
    bool isAnnouncing_ = false;
    bool isExpandable_ = false;
    bool isExpanded_ = false;
};

/// What is said by something around a text.
class SpokenAbove : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    /// Whether `item`, or something that it lies in, says all the words in it: a button, a row.
    Q_INVOKABLE static bool says(QQuickItem* item);
};

} // namespace orbel
