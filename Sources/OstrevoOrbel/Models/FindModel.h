#pragma once

#include "AppModel/AppModel.h"
#include "Models/RoleList.h"

#include <memory>
#include <QtQml/qqmlregistration.h>
#include <vector>

namespace orbel {

/// The files and folders of the application's tree whose names contain a text, the largest first. Looks for
/// them on a thread of its own; with the next letter, or another tree, what is under way is cancelled and
/// dropped. Lives on the main thread.
class FindModel : public RoleList {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(orbel::AppModel* app READ app WRITE setApp NOTIFY appChanged)
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)
    /// The rows are not yet those of the text.
    Q_PROPERTY(bool searching READ isSearching NOTIFY searchingChanged)
    /// "12 found", "The 200 largest", "Nothing of this name"; empty without a text, and until there are rows.
    Q_PROPERTY(QString summary READ summary NOTIFY searchingChanged)

public:
    static constexpr std::size_t most = 200;

    explicit FindModel(QObject* parent = nullptr);
    ~FindModel() override;

    AppModel* app() const { return app_; }
    void setApp(AppModel* app);
    QString text() const { return text_; }
    void setText(const QString& text);
    bool isSearching() const { return token_ != nullptr; }
    QString summary() const;

    int rowCount(const QModelIndex& parent = {}) const override;

Q_SIGNALS:
    void appChanged();
    void textChanged();
    void searchingChanged();

private:
    void search();
    void stop();
    void show(std::shared_ptr<const FileTree> tree, std::vector<NodeIndex> found);

    AppModel* app_ = nullptr;
    QString text_;
    std::shared_ptr<ScanCancellation> token_; ///< of the search that is under way
    std::shared_ptr<const FileTree> tree_;    ///< that the rows are of
    std::vector<NodeIndex> found_;

    Inbox inbox_; ///< the last member: what it delivers finds all others alive
};

} // namespace orbel
