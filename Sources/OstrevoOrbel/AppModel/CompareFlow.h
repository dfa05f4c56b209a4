#pragma once

#include "AppModel/KeptScanSettings.h"
#include "AppModel/LatestJob.h"
#include "AppModel/Notice.h"
#include "AppModel/ScanFlow.h"
#include "Models/ComparedScans.h"
#include "Models/GrowthModel.h"
#include "Saved/ScanArchive.h"

#include <memory>
#include <optional>
#include <QObject>
#include <QStringList>
#include <QtQml/qqmlregistration.h>
#include <QUrl>
#include <string>
#include <vector>

namespace orbel {

/// What changed since an earlier scan of the same folder. Belongs to the AppModel; used on the main thread,
/// while scans are read, compared and kept on a thread of its own.
///
/// A complete scan of this computer is compared with the newest kept one before it as soon as it is shown,
/// and kept if it is new. Any complete scan, also one from elsewhere, can be compared with one in a file.
/// What is moved or measured again afterwards changes the tree, and the rows follow it. Both scans and what
/// changed between them node by node are in memory only while something needs them; when the tree changes
/// then, it is compared again.
class CompareFlow final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the AppModel.")
    /// The folders that grew most.
    Q_PROPERTY(orbel::GrowthModel* growth READ growth CONSTANT)
    /// The kept scans of the folder, the newest first, without the one that is shown: "18 November 2026 at
    /// 21:04 · 390.3 GB".
    Q_PROPERTY(QStringList scans READ scanTexts NOTIFY scansChanged)
    /// The one that is compared with, -1 for none. Another one is read; a failure is a notice, and the
    /// comparison stays.
    Q_PROPERTY(int scan READ scan WRITE setScan NOTIFY changed)
    /// Whether what is shown can be compared: it is a complete scan, from wherever.
    Q_PROPERTY(bool possible READ isPossible NOTIFY changed)

public:
    /// What may need the comparison itself.
    enum class Need { list, map };

    /// The arguments outlive this.
    CompareFlow(const AppEnvironment& environment, const ScanFlow& scan, const KeptScanSettings& keeping,
                Notice& notice);

    GrowthModel* growth() { return &growth_; }
    bool isBusy() const { return job_.isRunning(); }
    QStringList scanTexts() const;
    int scan() const;
    void setScan(int number);
    bool isPossible() const { return scan_.hasTree() && !scan_.isPartial(); }
    /// Compares with the scan in a file, which is one of the scans from then on, until another one is shown.
    Q_INVOKABLE void openFile(const QUrl& file);

    /// Brings the comparison into memory, or lets it go when nothing else needs it.
    void need(Need need, bool isNeeded);
    /// Absent when nothing needs it, until it has been made, and when there is none.
    const std::shared_ptr<const ComparedScans>& compared() const { return compared_; }

Q_SIGNALS:
    void changed();
    void scansChanged();
    void comparedChanged();

private:
    using Entry = ScanArchive::Entry;
    struct Outcome {
        GrowthModel::Content content{};
        std::shared_ptr<const ComparedScans> compared{}; ///< null when it was not needed
        std::optional<std::vector<Entry>> entries{};     ///< absent: as before
        std::optional<Date> chosen{};                    ///< when the scan was made that is compared with
        std::optional<Entry> file{};                     ///< that scan, when it was not kept here
        QString failure{}; ///< why the one that was chosen cannot be; empty when it is
    };

    void begin();
    void take(Outcome outcome);
    void clear();
    /// Without the comparison itself unless it is needed. Not for the main thread.
    static Outcome compare(std::shared_ptr<const FileTree> before, std::shared_ptr<const FileTree> after,
                           Date since, const std::string& home, bool isNeeded);
    void compareWith(const Entry& entry);
    void bringComparison();
    void compareAgain(Date since);
    bool isKeptHere(const Entry& entry) const;
    void addFile(Entry file);
    void setEntries(std::vector<Entry> entries);
    void setCompared(std::shared_ptr<const ComparedScans> compared);
    void follow();
    bool isNeeded() const { return needs_ != 0; }

    const AppEnvironment& environment_;
    const ScanFlow& scan_;
    const KeptScanSettings& keeping_;
    Notice& notice_;
    std::shared_ptr<const FileTree> tree_; ///< whose nodes the rows are; null without rows
    GrowthModel growth_;
    std::vector<Entry> entries_;
    std::optional<Date> chosen_;
    unsigned needs_ = 0; ///< one bit for each Need
    std::shared_ptr<const ComparedScans> compared_;
    LatestJob job_{"orbel.compare"};
};

} // namespace orbel
