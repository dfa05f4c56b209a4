#include "Services/WindowSnapshot.h"

#include <QFile>
#include <QImage>
#include <QQuickWindow>

namespace orbel {

bool writeWindowSnapshot(QQuickWindow& window, const std::string& path) {
    const QImage picture = window.grabWindow();
    QFile file(QFile::decodeName(path.c_str()));
    return !picture.isNull() && file.open(QIODevice::WriteOnly) && picture.save(&file, "PNG") && file.flush();
}

} // namespace orbel
