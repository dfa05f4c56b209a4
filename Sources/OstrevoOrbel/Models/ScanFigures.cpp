#include "Models/ScanFigures.h"

#include "Models/Wording.h"

namespace orbel {

void ScanFigures::set(const ScanProgress& progress) {
    entries_ = progress.entries;
    bytes_ = progress.bytes;
    unreadable_ = progress.unreadable;
    seconds_ = progress.elapsed;
    Q_EMIT changed();
}

QString ScanFigures::entries() const {
    return countText(entries_);
}

QString ScanFigures::entriesText() const {
    return countOf(entries_, tr("entry"), tr("entries"));
}

QString ScanFigures::duration() const {
    return durationText(seconds_);
}

QString ScanFigures::unreadable() const {
    return countText(unreadable_);
}

} // namespace orbel
