#include "Scan/KindTotals.h"
#include "Support/TreeBuilder.h"

#include <gtest/gtest.h>
#include <numeric>

namespace orbel {
namespace {

using test::TreeBuilder;

std::uint64_t of(const KindTotals& totals, FileKind kind) {
    return totals.at(static_cast<std::size_t>(kind));
}

TEST(KindTotals, AddUpToTheRootAndCountAPackageAsOneKind) {
    TreeBuilder builder;
    const auto folder = builder.folder(0, "films");
    builder.file(folder, "a.mkv", 100);
    builder.file(folder, "notes.pdf", 20);
    const auto app = builder.folder(0, "Tool.app", NodeFlags::package);
    builder.file(builder.folder(app, "Resources"), "intro.mp4", 3);
    const auto gone = builder.folder(0, "gone");
    builder.file(builder.folder(gone, "deeper"), "old.zip", 4000);
    auto tree = builder.build();
    const auto before = kindTotals(tree);
    EXPECT_EQ(of(before, FileKind::archive), 4000);

    tree.remove(std::vector{gone});
    const auto totals = kindTotals(tree);
    EXPECT_EQ(of(totals, FileKind::video), 100) << "the film in the package is part of an app";
    EXPECT_EQ(of(totals, FileKind::application), 3);
    EXPECT_EQ(of(totals, FileKind::document), 20);
    EXPECT_EQ(of(totals, FileKind::archive), 0) << "what is below a detached folder is gone with it";
    EXPECT_EQ(std::accumulate(totals.begin(), totals.end(), std::uint64_t{0}), tree.allocated(0));
}

} // namespace
} // namespace orbel
