#include "Views/SpokenItem.h"

#include <algorithm>
#include <QAccessible>
#include <QAccessibleObject>
#include <QCoreApplication>
#include <QQuickWindow>

namespace orbel {

namespace {

/// What `Accessible` attaches to an item, whose class is private to Qt; null where nothing did.
const QObject* spokenFactsOf(const QQuickItem& item) {
    auto* const object = const_cast<QQuickItem*>(&item);
    static QQmlAttachedPropertiesFunc attach = nullptr;
    if (attach == nullptr)
        attach = qmlAttachedPropertiesFunction(object,
                                               QMetaType::fromName("QQuickAccessibleAttached*").metaObject());
    return attach == nullptr ? nullptr : qmlAttachedPropertiesObject(object, attach, false);
}

QAccessible::Role spokenRoleOf(const QQuickItem& item) {
    const auto* const facts = spokenFactsOf(item);
    return facts == nullptr ? QAccessible::NoRole
                            : static_cast<QAccessible::Role>(facts->property("role").toInt());
}

/// Whether the type of an item, or one that it is made from, is this file's.
bool isMadeFrom(const QObject& object, QByteArrayView file) {
    for (const auto* type = object.metaObject(); type != nullptr; type = type->superClass()) {
        const QByteArrayView name(type->className());
        if (name.startsWith(file) && name.sliced(file.size()).startsWith("_QMLTYPE_"))
            return true;
    }
    return false;
}

bool isSpokenRow(const QObject& object) {
    return isMadeFrom(object, "ItemRow");
}

bool isSpokenList(const QObject& object) {
    return isMadeFrom(object, "ItemTable");
}

/// What can be seen of an item in its window.
QRectF sightOf(const QQuickItem& item) {
    const auto* const window = item.window();
    if (window == nullptr || !window->isVisible() || !item.isVisible())
        return {};
    auto part = item.mapRectToScene(item.boundingRect()) & QRectF({0, 0}, QSizeF(window->size()));
    for (const auto* around = item.parentItem(); around != nullptr; around = around->parentItem())
        if (around->clip())
            part &= around->mapRectToScene(around->boundingRect());
    return part;
}

/// All that is said below an item, in its order, without what lies in what is said.
void collectSpoken(const QQuickItem& item, QList<QQuickItem*>& found) {
    const auto children = item.childItems();
    for (auto* const child : children) {
        const auto* const facts = spokenFactsOf(*child);
        if (facts != nullptr && !facts->property("ignored").toBool())
            found.push_back(child);
        else
            collectSpoken(*child, found);
    }
}

void sortFromTop(const QQuickItem& item, QList<QQuickItem*>& children) {
    std::ranges::stable_sort(children, {},
                             [&](const auto* child) { return child->mapToItem(&item, QPointF()).y(); });
}

/// The words that can be seen in an item, without those of the buttons in it.
void collectWords(const QQuickItem& item, QStringList& words) {
    const auto children = item.childItems();
    for (const auto* const child : children) {
        if (!child->isVisible() || child->inherits("QQuickAbstractButton"))
            continue;
        if (child->inherits("QQuickText"))
            words << child->property("text").toString().trimmed();
        collectWords(*child, words);
    }
}

/// The letters and figures, to tell whether words are said already.
QString essenceOf(const QString& words) {
    QString essence;
    for (const auto letter : words)
        if (letter.isLetterOrNumber())
            essence += letter.toLower();
    return essence;
}

/// Of a control the role of its type, unless its file says another; of anything else what its file says.
QAccessible::Role roleOfType(const QQuickItem& item) {
    constexpr std::pair<const char*, QAccessible::Role> types[] = {
        {"QQuickMenuItem", QAccessible::MenuItem},       {"QQuickComboBox", QAccessible::ComboBox},
        {"QQuickCheckBox", QAccessible::CheckBox},       {"QQuickSwitch", QAccessible::CheckBox},
        {"QQuickRadioButton", QAccessible::RadioButton}, {"QQuickItemDelegate", QAccessible::ListItem},
        {"QQuickAbstractButton", QAccessible::Button}};
    for (const auto& [type, role] : types)
        if (item.inherits(type))
            return role;
    return spokenRoleOf(item);
}

/// A button, a row of a list, or what others have the focus in: a popup, a box of choices.
class SpokenItem : public QAccessibleObject, public QAccessibleActionInterface {
public:
    explicit SpokenItem(QQuickItem* item) : QAccessibleObject(item) {}

    QWindow* window() const override { return item().window(); }
    QAccessibleInterface* parent() const override {
        for (auto* above = item().parentItem(); above != nullptr; above = above->parentItem()) {
            const auto* const facts = spokenFactsOf(*above);
            if (facts != nullptr && !facts->property("ignored").toBool())
                return QAccessible::queryAccessibleInterface(above);
        }
        return QAccessible::queryAccessibleInterface(item().window());
    }
    QAccessibleInterface* child(int index) const override {
        return QAccessible::queryAccessibleInterface(spokenChildren().value(index));
    }
    int childCount() const override { return static_cast<int>(spokenChildren().size()); }
    int indexOfChild(const QAccessibleInterface* child) const override {
        return static_cast<int>(spokenChildren().indexOf(static_cast<QQuickItem*>(child->object())));
    }
    QAccessibleInterface* childAt(int x, int y) const override {
        for (auto* const child : spokenChildren()) {
            auto* const interface = QAccessible::queryAccessibleInterface(child);
            if (interface != nullptr && interface->rect().contains(x, y))
                return interface;
        }
        return nullptr;
    }

    QRect rect() const override {
        if (item().window() == nullptr)
            return {};
        const auto inWindow = item().mapRectToScene(item().boundingRect());
        return {item().window()->mapToGlobal(inWindow.topLeft().toPoint()), inWindow.size().toSize()};
    }
    QAccessible::Role role() const override {
        const auto* const spoken = Spoken::of(item());
        return spoken != nullptr && spoken->role() != QAccessible::NoRole ? spoken->role()
                                                                          : roleOfType(item());
    }
    QString text(QAccessible::Text text) const override {
        if (text == QAccessible::Name)
            return name();
        return text == QAccessible::Description ? description() : QString();
    }
    QAccessible::State state() const override {
        QAccessible::State state;
        state.invisible = !item().isVisible() || item().opacity() == 0;
        state.offscreen = sightOf(item()).isEmpty();
        state.disabled = !item().isEnabled() || isRefused();
        state.focused =
            (item().window() != nullptr && item().window()->activeFocusItem() == &item()) || isPartOfFocus();
        state.focusable = item().activeFocusOnTab() || state.focused;
        if (isButton()) {
            const auto kind = role();
            const bool isChecked = item().property("checked").toBool();
            state.selectable = kind == QAccessible::PageTab;
            state.selected = state.selectable && isChecked;
            state.checkable = kind == QAccessible::CheckBox || kind == QAccessible::RadioButton
                              || item().property("checkable").toBool();
            state.checked = state.checkable && isChecked;
            state.pressed = item().property("pressed").toBool();
            return state;
        }
        state.checkable = fact("checkable").toBool();
        state.checked = fact("checked").toBool();
        state.checkStateMixed = fact("checkStateMixed").toBool();
        state.selectable = fact("selectable").toBool();
        state.selected = fact("selected").toBool();
        if (const auto* const spoken = Spoken::of(item()); spoken != nullptr && spoken->isExpandable()) {
            state.expandable = true;
            state.expanded = spoken->isExpanded();
            state.collapsed = !state.expanded;
        }
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : QAccessibleObject::interface_cast(type);
    }
    QStringList actionNames() const override {
        QStringList actions;
        if (isPressable())
            actions << pressAction();
        if (state().checkable && !state().disabled)
            actions << toggleAction();
        if (item().activeFocusOnTab())
            actions << setFocusAction();
        return actions;
    }
    void doAction(const QString& action) override {
        if (action == setFocusAction())
            item().forceActiveFocus(Qt::OtherFocusReason);
        else if (actionNames().contains(action) && isButton())
            QMetaObject::invokeMethod(&item(), "click");
        else if (actionNames().contains(action))
            QMetaObject::invokeMethod(const_cast<QObject*>(spokenFactsOf(item())),
                                      action == toggleAction() ? "toggleAction" : "pressAction");
    }
    QStringList keyBindingsForAction(const QString& /*action*/) const override { return {}; }

protected:
    QQuickItem& item() const { return *static_cast<QQuickItem*>(object()); }
    virtual QList<QQuickItem*> spokenChildren() const {
        QList<QQuickItem*> children;
        // What is in a button is its own words.
        if (!isButton())
            collectSpoken(item(), children);
        // The entries of a menu are listed as they were made.
        if (role() == QAccessible::PopupMenu)
            sortFromTop(item(), children);
        return children;
    }

private:
    QVariant fact(const char* name) const {
        const auto* const facts = spokenFactsOf(item());
        return facts == nullptr ? QVariant() : facts->property(name);
    }
    QString name() const {
        const auto* const spoken = Spoken::of(item());
        if (spoken != nullptr && !spoken->name().isEmpty())
            return spoken->name();
        return (isButton() ? item().property("text") : fact("name")).toString();
    }
    bool isRefused() const { return isSpokenRow(item()) && item().property("refused").toBool(); }
    bool isButton() const { return item().inherits("QQuickAbstractButton"); }
    /// A row that is in no table, as in a report, only says something.
    bool isPressable() const {
        return isSpokenRow(item()) ? item().property("table").value<QObject*>() != nullptr
                                   : item().isEnabled() && (isButton() || item().inherits("QQuickComboBox"));
    }
    bool isPartOfFocus() const {
        auto* const holder = item().window() == nullptr ? nullptr : item().window()->activeFocusItem();
        const auto* const spoken = holder == nullptr ? nullptr : Spoken::of(*holder);
        return spoken != nullptr && spoken->part() == &item();
    }
    /// What the name leaves out of the words in sight is added to what explains it.
    QString description() const {
        QStringList words;
        if (const auto explained = fact("description").toString(); !explained.isEmpty())
            words << explained;
        if (!isSpokenRow(item()) && !isButton())
            return words.value(0);
        QStringList seen;
        collectWords(item(), seen);
        const auto said = essenceOf(name());
        for (const auto& each : seen)
            if (!said.contains(essenceOf(each)) && !essenceOf(words.join(u' ')).contains(essenceOf(each)))
                words << each;
        return words.join(QStringLiteral(", "));
    }
};

/// What has the focus for its parts. The children of a list are the rows that have been made, from the top.
class SpokenHolder : public SpokenItem {
public:
    using SpokenItem::SpokenItem;

    QAccessibleInterface* focusChild() const override {
        const auto* const spoken = Spoken::of(item());
        return spoken == nullptr ? nullptr : QAccessible::queryAccessibleInterface(spoken->part());
    }
    QAccessible::State state() const override {
        auto state = SpokenItem::state();
        // Then its row has it.
        state.focused = state.focused && focusChild() == nullptr;
        return state;
    }
    QStringList actionNames() const override { return {setFocusAction()}; }

protected:
    QList<QQuickItem*> spokenChildren() const override {
        QList<QQuickItem*> children;
        collectSpoken(item(), children);
        if (!isSpokenList(item()))
            return children;
        // Rows that are kept to be used again lie where they were.
        children.removeIf([this](QQuickItem* child) {
            QVariant row;
            return isSpokenRow(*child)
                   && (!QMetaObject::invokeMethod(&item(), "itemAt", Q_RETURN_ARG(QVariant, row),
                                                  Q_ARG(int, child->property("index").toInt()))
                       || row.value<QQuickItem*>() != child);
        });
        sortFromTop(item(), children);
        return children;
    }
};

QAccessibleInterface* makeSpokenInterface(const QString& /*className*/, QObject* object) {
    auto* const item = qobject_cast<QQuickItem*>(object);
    if (item == nullptr)
        return nullptr;
    if (isSpokenList(*item) || isMadeFrom(*item, "Segmented"))
        return new SpokenHolder(item);
    // A field is a scope, too, but Qt knows how to say a text that is being written.
    if (isSpokenRow(*item) || item->inherits("QQuickAbstractButton")
        || (item->isFocusScope() && !item->inherits("QQuickTextInput")))
        return new SpokenItem(item);
    return nullptr;
}

} // namespace

Spoken::Spoken(QObject* control) : QObject(control) {
    // Of any other control that has the focus itself, Qt tells.
    if (auto* const item = qobject_cast<QQuickItem*>(control))
        connect(item, &QQuickItem::activeFocusChanged, this, [this, item] {
            if (part_ != nullptr || item->inherits("QQuickPopupItem"))
                announceLater();
        });
}

const Spoken* Spoken::of(QObject& control) {
    return qobject_cast<Spoken*>(qmlAttachedPropertiesObject<Spoken>(&control, false));
}

void Spoken::setPart(QQuickItem* part) {
    if (part_ == part)
        return;
    part_ = part;
    Q_EMIT partChanged();
    announceLater();
}

/// When a row is given to another item, its words follow at once.
void Spoken::announceLater() {
    if (isAnnouncing_)
        return;
    isAnnouncing_ = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            isAnnouncing_ = false;
            auto* const holder = qobject_cast<QQuickItem*>(parent());
            if (holder == nullptr || holder->window() == nullptr
                || holder->window()->activeFocusItem() != holder)
                return;
            QAccessibleEvent event(part_ != nullptr ? part_.data() : holder, QAccessible::Focus);
            QAccessible::updateAccessibility(&event);
        },
        Qt::QueuedConnection);
}

static void installSpokenItems() {
    QAccessible::installFactory(makeSpokenInterface);
}
Q_COREAPP_STARTUP_FUNCTION(installSpokenItems)

bool SpokenAbove::says(QQuickItem* item) {
    for (const auto* at = item; at != nullptr; at = at->parentItem()) {
        // These say it before their roles are set.
        if (isSpokenRow(*at) || isMadeFrom(*at, "Sentence") || at->inherits("QQuickAbstractButton")
            || at->inherits("QQuickComboBox"))
            return true;
        switch (spokenRoleOf(*at)) {
        case QAccessible::AlertMessage:
        case QAccessible::ButtonMenu:
        case QAccessible::Graphic:
        case QAccessible::Heading:
        case QAccessible::Link:
        case QAccessible::ProgressBar:
        case QAccessible::StaticText:
        case QAccessible::StatusBar:
        case QAccessible::ToolTip:
            return true;
        default:
            break;
        }
    }
    return false;
}

} // namespace orbel
