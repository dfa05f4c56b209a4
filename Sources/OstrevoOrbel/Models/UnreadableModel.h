#pragma once

#include "Models/GadgetListModel.h"

#include <QObject>
#include <QString>
#include <string>
#include <vector>

namespace orbel {

/// An entry that a scan could not read. A plain value.
struct UnreadableEntry {
    Q_GADGET
    Q_PROPERTY(QString path MEMBER path)
    Q_PROPERTY(QString command MEMBER command)

public:
    QString path;    ///< for people: "~" in place of the home
    QString command; ///< what a terminal would measure it with: "sudo orbel --scan-json PATH"

    bool operator==(const UnreadableEntry&) const = default;
};

/// What a scan could not read: the first entries by path, at most `mostRows`, with how to read them.
class UnreadableModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the AppModel.")
    Q_PROPERTY(orbel::RoleList* entries READ entries CONSTANT)
    /// How many there are, listed or not.
    Q_PROPERTY(quint64 total READ total NOTIFY changed)
    /// "214 entries could not be read".
    Q_PROPERTY(QString headline READ headline NOTIFY changed)

public:
    static constexpr std::size_t mostRows = 1000;

    /// `paths` as they are on the disk; `total` counts those that are not among them too.
    void setPaths(const std::vector<std::string>& paths, quint64 total, const std::string& home);

    GadgetListModel<UnreadableEntry>* entries() { return &entries_; }
    quint64 total() const { return total_; }
    QString headline() const;

Q_SIGNALS:
    void changed();

private:
    GadgetListModel<UnreadableEntry> entries_;
    quint64 total_ = 0;
};

} // namespace orbel
