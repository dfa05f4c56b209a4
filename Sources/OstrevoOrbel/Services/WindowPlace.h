#pragma once

#include <optional>
#include <QObject>
#include <QQuickWindow>
#include <QRect>
#include <QSettings>
#include <QTimer>
#include <QVariantMap>
#include <vector>

namespace orbel {

/// Where the window opens and how large: as the user left it, on a screen that is still there, and never
/// larger than that screen has room. Keeps what the user makes of it in the settings, under "window". Used on
/// the main thread.
class WindowPlace final : public QObject {
    Q_OBJECT

public:
    struct Choice {
        QSize size;
        QSize minimum;
        std::optional<QPoint> position; ///< absent: the desktop's choice
        bool isMaximized = false;

        bool operator==(const Choice&) const = default;
    };

    /// `screens`: the available areas, the primary one first, at least one. `hasPositions`: whether windows
    /// on this platform know where they are.
    static Choice choose(const QSettings& settings, const std::vector<QRect>& screens, bool hasPositions);
    /// The same for this desktop, as properties for the window to begin with.
    static QVariantMap properties(const QSettings& settings);

    /// Keeps the window's place from now on. The arguments outlive this.
    WindowPlace(QQuickWindow& window, QSettings& settings);
    /// Keeps it a last time.
    ~WindowPlace() override;

    /// As it is, maximised or not.
    static void bringToFront(QQuickWindow& window);

private:
    void takeVisibility(QWindow::Visibility visibility);
    void keep();
    void fitMinimum();

    QQuickWindow& window_;
    QSettings& settings_;
    QTimer settled_; ///< a window that is maximised has its new size before its new state
    bool isMaximized_ = false;
};

} // namespace orbel
