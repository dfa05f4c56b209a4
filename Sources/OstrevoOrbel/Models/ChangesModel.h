#pragma once

#include "Models/ChangeOrder.h"
#include "Models/RoleList.h"

#include <memory>
#include <QtQml/qqmlregistration.h>
#include <string>

namespace orbel {

/// What changed, as it is shown. Each row is put into words when it is asked for, so a million cost no more
/// than ten.
///
/// Roles: `name`, `kind`, `kindName`; `folder` "~/Downloads", where it lies or lay, or that it is the root;
/// `detail`, the same or where it moved from as well; `path`; `change`, a NodeChange, and `changeName`
/// "Grew"; `before` and `after` "5.2 GB", a dash where it was not there; `difference` "+5.2 GB"; `gone`,
/// whether it is not there any more, and then `folderKey` is the key of the folder that held it.
class ChangesModel : public orbel::RoleList {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the ChangesFlow.")

public:
    explicit ChangesModel(std::string home);

    /// Shows rows of these scans; null for none.
    void show(std::shared_ptr<const ComparedScans> scans, ChangeOrder order);

    /// By how much all that is shown takes more.
    std::int64_t net() const { return order_.net; }
    int rowCount(const QModelIndex& parent = {}) const override;

protected:
    std::optional<std::string_view> nameBytes(int row) const override;
    int rowOfKey(const QString& key) const override;

private:
    const Change& changeAt(int row) const;
    QString folderText(const FileTree& tree, NodeIndex node) const;

    std::string home_;
    std::shared_ptr<const ComparedScans> scans_;
    ChangeOrder order_;
};

} // namespace orbel
