#pragma once

#include "AppModel/ScanFlow.h"
#include "Models/RoleList.h"

#include <memory>
#include <QtQml/qqmlregistration.h>
#include <vector>

namespace orbel {

/// The files and folders of the scanned tree whose names contain a text, the largest first. Looks for
/// them on a thread of its own; with the next letter, or another tree, what is under way is cancelled and
/// dropped. Lives on the main thread.
class FindModel : public orbel::RoleList {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(orbel::ScanFlow* scan READ scan WRITE setScan NOTIFY scanChanged REQUIRED)
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)
    /// The rows are not yet those of the text.
    Q_PROPERTY(bool searching READ isSearching NOTIFY searchingChanged)
    /// "12 found", "The 200 largest", "Nothing of this name"; empty without a text, and until there are rows.
    Q_PROPERTY(QString summary READ summary NOTIFY searchingChanged)

public:
    static constexpr std::size_t most = 200;

    explicit FindModel(QObject* parent = nullptr);

    ScanFlow* scan() const { return scan_; }
    void setScan(ScanFlow* scan);
    QString text() const { return text_; }
    void setText(const QString& text);
    bool isSearching() const { return job_.isRunning(); }
    QString summary() const;

    int rowCount(const QModelIndex& parent = {}) const override;

Q_SIGNALS:
    void scanChanged();
    void textChanged();
    void searchingChanged();

private:
    void search();
    void show(std::shared_ptr<const FileTree> tree, std::vector<NodeIndex> found);

    ScanFlow* scan_ = nullptr;
    QString text_;
    std::shared_ptr<const FileTree> tree_; ///< that the rows are of
    std::vector<NodeIndex> found_;
    LatestJob job_{"orbel.find"};
};

} // namespace orbel
