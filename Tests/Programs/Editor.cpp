#include <cstdio>
#include <QCoreApplication>
#include <QDBusConnection>
#include <QStringList>
#include <QVariantMap>

/// The actions of an application's menu, as other programs find them on the session bus.
class EditorMenu final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.gtk.Actions")

public Q_SLOTS:
    QStringList List() { return {QStringLiteral("save"), QStringLiteral("quit")}; }
    void Activate(const QString& action, const QVariantList&, const QVariantMap&) {
        if (action == QLatin1String("quit"))
            std::puts("asked to save");
        std::fflush(stdout);
    }
};

/// An application with something unsaved: asked to quit, it asks its user and stays.
int main(int count, char** words) {
    const QCoreApplication application(count, words);
    auto bus = QDBusConnection::sessionBus();
    EditorMenu menu;
    bus.registerObject(QStringLiteral("/org/example/Test_Editor"), &menu, QDBusConnection::ExportAllSlots);
    if (!bus.registerService(QStringLiteral("org.example.Test-Editor")))
        return 1;
    std::puts("running");
    std::fflush(stdout);
    return QCoreApplication::exec();
}

#include "Editor.moc"
