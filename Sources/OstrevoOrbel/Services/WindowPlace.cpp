#include "Services/WindowPlace.h"

#include <algorithm>
#include <QGuiApplication>
#include <QScreen>

namespace orbel {

namespace {

const QString sizeKey = QStringLiteral("window/size");
const QString positionKey = QStringLiteral("window/position");
const QString maximizedKey = QStringLiteral("window/maximized");

constexpr QSize usual(1440, 900);
constexpr QSize least(800, 560);
/// Room for the window's frame, whose size is not known before it is there.
constexpr QSize frame(16, 48);
/// What has to be seen of the title of a window that opens where it was.
constexpr QSize handle(120, 24);

/// Where windows have no places, as under Wayland, all that they say is the origin.
bool platformHasPositions() {
    return !QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

std::vector<QRect> availableAreas() {
    std::vector<QRect> areas;
    for (const auto* screen : QGuiApplication::screens()) // the primary one first
        areas.push_back(screen->availableGeometry());
    return areas;
}

} // namespace

WindowPlace::Choice WindowPlace::choose(const QSettings& settings, const std::vector<QRect>& screens,
                                        bool hasPositions) {
    const auto kept = settings.value(sizeKey);
    const auto size = kept.isValid() ? kept.toSize() : usual;
    const auto position = settings.value(positionKey);
    auto area = screens.front();
    std::optional<QPoint> place;
    if (hasPositions && position.isValid()) {
        const QRect title(position.toPoint(), QSize(size.width(), handle.height()));
        for (const auto& screen : screens) {
            const auto seen = screen.intersected(title);
            if (seen.width() < handle.width() || seen.height() < handle.height())
                continue;
            area = screen;
            place = position.toPoint();
            break;
        }
    }
    const auto room = area.size() - frame;
    Choice choice{.size = {},
                  .minimum = least.boundedTo(room),
                  .position = place,
                  .isMaximized = settings.value(maximizedKey, false).toBool()};
    choice.size = size.expandedTo(choice.minimum).boundedTo(kept.isValid() ? area.size() : room);
    // What was larger than the screen is now would reach over its edge.
    if (place && choice.size != size)
        choice.position = QPoint(std::min(place->x(), area.right() + 1 - choice.size.width()),
                                 std::min(place->y(), area.bottom() + 1 - choice.size.height()));
    return choice;
}

QVariantMap WindowPlace::properties(const QSettings& settings) {
    const auto choice = choose(settings, availableAreas(), platformHasPositions());
    QVariantMap properties{{QStringLiteral("minimumWidth"), choice.minimum.width()},
                           {QStringLiteral("minimumHeight"), choice.minimum.height()},
                           {QStringLiteral("width"), choice.size.width()},
                           {QStringLiteral("height"), choice.size.height()}};
    if (choice.position) {
        properties.insert(QStringLiteral("x"), choice.position->x());
        properties.insert(QStringLiteral("y"), choice.position->y());
    }
    if (choice.isMaximized)
        properties.insert(QStringLiteral("visibility"), QWindow::Maximized);
    return properties;
}

WindowPlace::WindowPlace(QQuickWindow& window, QSettings& settings) : window_(window), settings_(settings) {
    constexpr auto settledAfter = std::chrono::milliseconds(500);
    settled_.setSingleShot(true);
    settled_.setInterval(settledAfter);
    connect(&settled_, &QTimer::timeout, this, &WindowPlace::keep);
    const auto restart = [this] { settled_.start(); };
    connect(&window, &QWindow::widthChanged, this, restart);
    connect(&window, &QWindow::heightChanged, this, restart);
    connect(&window, &QWindow::xChanged, this, restart);
    connect(&window, &QWindow::yChanged, this, restart);
    connect(&window, &QWindow::visibilityChanged, this, &WindowPlace::takeVisibility);
    connect(&window, &QWindow::screenChanged, this, &WindowPlace::fitMinimum);
    isMaximized_ = window.visibility() == QWindow::Maximized;
}

WindowPlace::~WindowPlace() {
    if (settled_.isActive())
        keep();
}

void WindowPlace::takeVisibility(QWindow::Visibility visibility) {
    // A window that is closed or minimised comes back as it was.
    if (visibility == QWindow::Maximized || visibility == QWindow::Windowed)
        isMaximized_ = visibility == QWindow::Maximized;
    settled_.start();
}

void WindowPlace::keep() {
    settings_.setValue(maximizedKey, isMaximized_);
    const auto visibility = window_.visibility();
    if (isMaximized_ || (visibility != QWindow::Windowed && visibility != QWindow::Hidden))
        return;
    settings_.setValue(sizeKey, window_.size());
    if (platformHasPositions())
        settings_.setValue(positionKey, window_.position());
}

void WindowPlace::fitMinimum() {
    if (const auto* const screen = window_.screen())
        window_.setMinimumSize(least.boundedTo(screen->availableGeometry().size() - frame));
}

void WindowPlace::bringToFront(QQuickWindow& window) {
    // QWindow::show would take a maximised window back to its usual size.
    window.setWindowStates(window.windowStates() & ~Qt::WindowMinimized);
    window.setVisible(true);
    window.raise();
    window.requestActivate();
}

} // namespace orbel
