#include "Views/PathLines.h"

#include <QFontMetricsF>
#include <QTextBoundaryFinder>

namespace orbel {

namespace {

/// How much of the beginning of a name fits, in whole characters as people see them; one at least.
qsizetype fitting(const QString& name, const QFontMetricsF& metrics, qreal width) {
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, name);
    qsizetype fits = finder.toNextBoundary();
    for (auto next = finder.toNextBoundary(); next > 0; next = finder.toNextBoundary()) {
        if (metrics.horizontalAdvance(name.left(next)) > width)
            break;
        fits = next;
    }
    return fits > 0 ? fits : name.size();
}

} // namespace

QString PathLines::broken(const QString& path, const QFont& font, qreal width) {
    const QFontMetricsF metrics(font);
    if (width <= 0 || metrics.horizontalAdvance(path) <= width)
        return path;
    QString lines;
    QString line;
    const auto endLine = [&] {
        lines += line + QChar(QChar::LineSeparator);
        line.clear();
    };
    for (qsizetype begin = 0; begin < path.size();) {
        const auto slash = path.indexOf(QLatin1Char('/'), begin);
        const auto end = slash < 0 ? path.size() : slash + 1;
        auto name = path.mid(begin, end - begin);
        begin = end;
        if (!line.isEmpty() && metrics.horizontalAdvance(line + name) > width)
            endLine();
        while (line.isEmpty() && metrics.horizontalAdvance(name) > width) {
            line = name.left(fitting(name, metrics, width));
            name.remove(0, line.size());
            endLine();
        }
        line += name;
    }
    return lines + line;
}

} // namespace orbel
