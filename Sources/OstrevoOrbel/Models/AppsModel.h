#pragma once

#include "Find/InstalledApp.h"
#include "Models/RoleList.h"

#include <cstdint>
#include <optional>
#include <QtQml/qqmlregistration.h>
#include <string>
#include <vector>

namespace orbel {

/// The applications as a list: found by a text, sorted by name or by size; below them in a section of their
/// own those that were removed and left something. Used on the main thread.
class AppsModel : public orbel::RoleList {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the AppsFlow.")
    /// The column that the rows are sorted by, and how.
    Q_PROPERTY(bool bySize READ isBySize NOTIFY orderChanged)
    Q_PROPERTY(bool descending READ isDescending NOTIFY orderChanged)

public:
    /// One application, as it is shown. A plain value.
    struct Entry {
        InstalledApp app; ///< of one that was removed, its key in place of the path
        std::optional<std::uint64_t> bytes;
        std::string removedPath{}; ///< of what it left, when it was removed
        bool isRemoved() const { return !removedPath.empty(); }

        /// What tells it from others of its name: its place where that is the application, else its id.
        QString id(const std::string& home) const;
        QString initial() const;
        QString size() const; ///< "—" while not known
    };

    explicit AppsModel(std::string home, QObject* parent = nullptr);

    /// Those that are installed; those that were removed stay.
    void setEntries(std::vector<Entry> entries);
    /// Those that were removed, which always come last.
    void setRemoved(std::vector<Entry> entries);
    /// Absent: nothing is known of its size.
    void setBytes(const std::string& path, std::optional<std::uint64_t> bytes);
    void remove(const std::string& path);
    /// Shows those whose name, id or source holds the text, whatever its case.
    void setFilter(const QString& text);
    void sortBy(bool size, bool descending);

    /// All, shown or not.
    const std::vector<Entry>& entries() const { return entries_; }
    std::size_t installedCount() const { return installed_; }

    /// Those rows that were removed.
    struct Removed {
        std::size_t count = 0;
        std::uint64_t bytes = 0;
    };
    Removed shownRemoved() const;
    const Entry* find(const std::string& path) const;
    const Entry* at(int row) const;
    /// -1 for one that is not shown.
    int rowOf(const std::string& path) const;

    bool isBySize() const { return bySize_; }
    bool isDescending() const { return descending_; }

    int rowCount(const QModelIndex& parent = {}) const override;

Q_SIGNALS:
    void orderChanged();

private:
    void arrange();

    std::string home_;
    std::vector<Entry> entries_;
    std::size_t installed_ = 0; ///< how many of them, from the first, are
    std::vector<std::size_t> rows_;
    QString filter_;
    bool bySize_ = false;
    bool descending_ = false;
};

} // namespace orbel
