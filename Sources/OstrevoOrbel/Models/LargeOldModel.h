#pragma once

#include "Models/LargeOldList.h"
#include "Models/RoleList.h"
#include "Models/Ticks.h"

#include <memory>
#include <QtQml/qqmlregistration.h>
#include <string>
#include <string_view>
#include <vector>

namespace orbel {

/// The rows of the large and old files as they are shown. Each is put into words when it is asked for, so a
/// hundred thousand cost no more than ten.
///
/// Roles: `node`, `name`, `kind`, `kindName`, `size`, `note`; `folder` "~/Downloads"; `path`; `lastUsed` "3
/// March 2025"; `record` "file access time"; `tick`, a Qt::CheckState; `refusal`, why it cannot be ticked;
/// `openIn` "Open in qemu-system-x86".
class LargeOldModel : public orbel::RoleList {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the LargeOldFlow.")

public:
    /// `ticks` outlive the model.
    LargeOldModel(const Ticks& ticks, std::string home);

    /// Shows rows of this list; nothing happens where they are shown already.
    void show(std::shared_ptr<const LargeOldList> list, LargeOldOrder order);
    /// Takes out what lies at these paths.
    void drop(const std::vector<std::string>& paths);
    /// Ticks have changed.
    void tellTicks() { notifyRows(); }

    std::uint64_t bytes() const { return bytes_; }
    /// Where the item at that path is shown; -1 where it is not.
    int placeOf(std::string_view path) const;
    /// The rows of the list that are shown.
    const std::vector<std::uint32_t>& shown() const { return order_.rows; }

    int rowCount(const QModelIndex& parent = {}) const override;

protected:
    int rowOfKey(const QString& key) const override;

private:
    const LargeOldQuery::Row& rowAt(int place) const;
    ContentKind kindAt(int place) const;
    void sumUp();

    const Ticks& ticks_;
    std::string home_;
    std::shared_ptr<const LargeOldList> list_;
    LargeOldOrder order_;
    std::uint64_t bytes_ = 0;
};

} // namespace orbel
