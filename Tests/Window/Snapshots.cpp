#include "Snapshots.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QGuiApplication>
#include <QSet>

namespace orbel::test {

namespace {

/// The rectangle of the scene in which an item can be seen: what the clipping ones around it leave of it.
QRectF seenPart(const QQuickItem& item) {
    QRectF part = item.mapRectToScene({0, 0, item.width(), item.height()});
    for (const auto* around = item.parentItem(); around != nullptr; around = around->parentItem())
        if (around->clip())
            part &= around->mapRectToScene({0, 0, around->width(), around->height()});
    return part;
}

std::string described(const QQuickItem& text, const QRectF& rect) {
    std::ostringstream words;
    words << '"' << text.property("text").toString().toStdString() << "\" at " << rect.x() << ',' << rect.y()
          << ' ' << rect.width() << 'x' << rect.height();
    return words.str();
}

/// Where the letters of a text are, which is less than its box when it is aligned in it.
QRectF lettersOf(const QQuickItem& text) {
    const double width = std::min(text.property("contentWidth").toDouble(), text.width());
    const double height = text.property("contentHeight").toDouble();
    const auto alignment = text.property("effectiveHorizontalAlignment").toInt();
    double x = 0;
    if (alignment == Qt::AlignRight)
        x = text.width() - width;
    else if (alignment == Qt::AlignHCenter)
        x = (text.width() - width) / 2;
    const bool isCentred = text.property("verticalAlignment").toInt() == Qt::AlignVCenter;
    const double y = isCentred ? std::max(0.0, (text.height() - height) / 2) : 0;
    // Two pixels are what the letters leave free above and below in every line.
    return text.mapRectToScene({x, y + 2, width, height - 4});
}

/// Fails for every text that does not fit: too wide for its box without saying so by "…", too high, over the
/// window's edge, or over another text.
void expectTextsFit(WindowScene& scene) {
    const QRectF window({0, 0}, QSizeF(scene.window().size()));
    std::vector<std::pair<QQuickItem*, QRectF>> seen;
    for (auto* text : scene.texts()) {
        const auto letters = lettersOf(*text);
        const auto box = text->mapRectToScene({0, 0, text->width(), text->height()});
        const auto part = seenPart(*text);
        if (part.height() < box.height() - 1)
            continue; // scrolled away, wholly or in part
        constexpr int elideNone = Qt::ElideNone;
        if (text->property("elide").toInt() == elideNone) {
            EXPECT_LE(text->property("contentWidth").toDouble(), part.width() + 1.5)
                << "Cut off: " << described(*text, box);
        }
        EXPECT_LE(text->property("contentHeight").toDouble(), text->height() + 1)
            << "Too high: " << described(*text, box);
        EXPECT_TRUE(window.adjusted(-1, -1, 1, 1).contains(part))
            << "Over the edge: " << described(*text, box);
        EXPECT_FALSE(part.width() < 1.5 * text->property("font").value<QFont>().pixelSize()
                     && text->property("truncated").toBool())
            << "Nothing left: " << described(*text, box);
        for (const auto& [other, taken] : seen) {
            const auto overlap = taken & letters;
            EXPECT_FALSE(overlap.width() > 1 && overlap.height() > 1)
                << described(*text, letters) << " over " << described(*other, taken);
        }
        seen.emplace_back(text, letters & part);
    }
    EXPECT_GT(seen.size(), 4U);
}

/// What is drawn has the theme's ground and many colours besides: text has edges, whatever it says.
void expectDrawn(const QImage& picture, const QString& name) {
    QSet<QRgb> colours;
    for (int y = 0; y < picture.height(); y += 3)
        for (int x = 0; x < picture.width(); x += 3)
            colours.insert(picture.pixel(x, y));
    EXPECT_GT(colours.size(), 40) << name.toStdString();
}

} // namespace

void keepPicture(WindowScene& scene, const QString& name) {
    const auto ratio = qGuiApp->devicePixelRatio();
    const auto scale = ratio > 1 ? QStringLiteral("@%1x").arg(ratio) : QString();
    for (const auto& appearance : {QStringLiteral("light"), QStringLiteral("dark")}) {
        SCOPED_TRACE(name.toStdString() + ", " + appearance.toStdString());
        scene.setAppearance(appearance);
        const auto picture = scene.picture();
        const bool isDark = picture.pixelColor(picture.width() / 2, 4).lightness() < 80;
        EXPECT_EQ(isDark, appearance == QLatin1String("dark"));
        expectDrawn(picture, name);
        const QDir folder(QStringLiteral(ORBEL_SNAPSHOTS));
        EXPECT_TRUE(folder.mkpath(QStringLiteral(".")));
        EXPECT_TRUE(picture.save(
            folder.filePath(name + QLatin1Char('-') + appearance + scale + QLatin1String(".png"))));
    }
    SCOPED_TRACE(name.toStdString());
    expectTextsFit(scene);
}

} // namespace orbel::test
