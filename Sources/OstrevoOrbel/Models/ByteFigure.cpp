#include "Models/ByteFigure.h"

#include "Safety/ByteFormat.h"

namespace orbel {

QString ByteFigure::text() const {
    return QString::fromStdString(ByteFormat::string(bytes_));
}

QString ByteFigure::value() const {
    return QString::fromStdString(ByteFormat::parts(bytes_).value);
}

QString ByteFigure::unit() const {
    return QString::fromStdString(ByteFormat::parts(bytes_).unit);
}

} // namespace orbel
