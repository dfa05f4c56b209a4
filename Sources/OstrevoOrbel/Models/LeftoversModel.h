#pragma once

#include "Find/LeftoverMatcher.h"
#include "Models/RoleList.h"
#include "Models/Ticks.h"

#include <QtQml/qqmlregistration.h>
#include <string>
#include <vector>

namespace orbel {

/// What goes with the selected application, in sections: the application with its own files, its leftovers,
/// and what only an administrator can remove. Where there are no leftovers, a row of that section says so.
///
/// Roles: `section` "app", "leftovers" or "shared"; `title`; `detail`, the application's path or why it
/// belongs to it; `kind`, `size`, `note`; `tick`, a Qt::CheckState; `refusal`, why it cannot be ticked;
/// `listed`, whether it is an item and not words in place of one.
class LeftoversModel : public orbel::RoleList {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the AppsFlow.")

public:
    /// `ticks` outlives this.
    LeftoversModel(std::string home, const Ticks& ticks, QObject* parent = nullptr);

    /// `items`: the application and its own files, as many as `ownItems`, then its leftovers. `noneText`: for
    /// when there are none of those.
    void set(std::vector<TickedItem> items, std::size_t ownItems,
             const std::vector<Leftover>& forAdministrators, const QString& noneText);
    void remove(const std::vector<std::string>& paths);

    /// Null for a row that stands for nothing that could be ticked.
    const TickedItem* itemAt(int row) const;
    std::size_t positionOf(const std::string& path) const;

    int rowCount(const QModelIndex& parent = {}) const override;

private:
    enum class Section { app, leftovers, shared };

    struct Row {
        Section section = Section::app;
        TickedItem ticked;
        QString words; ///< in place of an item
    };

    static QString sectionName(Section section);
    QString titleOf(const Row& row) const;
    QString detailOf(const Row& row) const;
    static ContentKind kindOf(const Row& row, int number);
    static QString sizeOf(const Row& row);

    std::string home_;
    const Ticks& ticks_;
    std::vector<Row> rows_;
};

} // namespace orbel
