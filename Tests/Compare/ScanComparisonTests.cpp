#include "Compare/ScanComparison.h"
#include "Support/TreeBuilder.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace orbel {
namespace {

using test::TreeBuilder;

struct Item {
    bool isFolder = false;
    std::uint64_t bytes = 0; ///< of a file
    std::uint64_t inode = 0;
    int minute = 0;
};

/// All that a disk holds, by path below the root; the folder that holds an item is there too.
using Disk = std::map<std::string, Item>;

std::string holderOf(const std::string& path) {
    const auto slash = path.rfind('/');
    return slash == std::string::npos ? "" : path.substr(0, slash);
}

bool isIn(const std::string& path, const std::string& folder) {
    return folder.empty() ? !path.empty() : path.starts_with(folder + "/");
}

FileTree scanned(const Disk& disk) {
    TreeBuilder builder("/data");
    std::map<std::string, NodeIndex> nodes{{"", 0}};
    for (const auto& [path, item] : disk) {
        const auto holder = nodes.at(holderOf(path));
        const auto name = path.substr(path.rfind('/') + 1);
        const auto node =
            item.isFolder ? builder.folder(holder, name) : builder.file(holder, name, item.bytes);
        builder.tree.inodes[node] = item.inode;
        builder.tree.modifiedMinutes[node] = item.minute;
        nodes[path] = node;
    }
    return builder.build();
}

std::uint64_t bytesOf(const Disk& disk, const std::string& path) {
    std::uint64_t bytes = 0;
    for (const auto& [each, item] : disk)
        if (each == path || isIn(each, path))
            bytes += item.bytes;
    return bytes;
}

/// "grew a/b 10 20", "moved old -> new 10 10": what `difference` and the comparison have to agree on.
using Rows = std::vector<std::string>;

Rows rowsOf(const ScanComparison& comparison, const FileTree& before, const FileTree& after) {
    const auto below = [](const FileTree& tree, NodeIndex node) {
        return node == 0 ? std::string() : tree.walkedPath(node).substr(std::string("/data/").size());
    };
    Rows rows;
    for (const auto& change : comparison.changes) {
        static const std::array names{"grew", "shrank", "came", "went", "moved"};
        std::string row = names.at(static_cast<std::size_t>(change.kind));
        if (change.kind == ChangeKind::went || change.kind == ChangeKind::moved)
            row += " " + below(before, change.before);
        if (change.kind == ChangeKind::moved)
            row += " ->";
        if (change.kind != ChangeKind::went)
            row += " " + below(after, change.after);
        rows.push_back(row + " " + std::to_string(bytesBefore(change, before)) + " "
                       + std::to_string(bytesAfter(change, after)));
    }
    return rows;
}

Rows compared(const Disk& before, const Disk& after) {
    const auto earlier = scanned(before);
    const auto later = scanned(after);
    return rowsOf(ScanComparison::between(earlier, later), earlier, later);
}

Rows inOrder(Rows rows) {
    std::ranges::sort(rows);
    return rows;
}

/// The same by paths alone, each looked for in the whole of the other disk.
Rows difference(const Disk& before, const Disk& after) {
    const auto isAlike = [](const Disk& other, const std::string& path, const Item& item) {
        const auto same = other.find(path);
        return same != other.end() && same->second.isFolder == item.isFolder;
    };
    // What is not there under its path, and lies in nothing that is not there either.
    const auto missing = [&](const Disk& disk, const Disk& other) {
        std::vector<std::string> paths;
        for (const auto& [path, item] : disk) {
            bool isTop = !isAlike(other, path, item);
            for (auto holder = holderOf(path); isTop && !holder.empty(); holder = holderOf(holder))
                isTop = isAlike(other, holder, disk.at(holder));
            if (isTop)
                paths.push_back(path);
        }
        return paths;
    };
    auto went = missing(before, after);
    auto came = missing(after, before);
    const auto text = [&](const std::string& was, const std::string& is) {
        return " " + std::to_string(was == "-" ? 0 : bytesOf(before, was)) + " "
               + std::to_string(is == "-" ? 0 : bytesOf(after, is));
    };
    Rows rows;
    std::erase_if(came, [&](const std::string& is) {
        const auto was = std::ranges::find_if(went, [&](const std::string& path) {
            const auto& [old, now] = std::pair(before.at(path), after.at(is));
            if (old.inode != now.inode || old.isFolder != now.isFolder)
                return false;
            if (!old.isFolder)
                return old.bytes == now.bytes && old.minute == now.minute;
            std::size_t entries = 0;
            std::size_t same = 0;
            for (const auto& [each, item] : before) {
                entries += isIn(each, path) ? 1U : 0U;
                same += isIn(each, path) && isAlike(after, is + each.substr(path.size()), item) ? 1U : 0U;
            }
            return entries == 0 ? old.minute == now.minute : same * 2 >= entries;
        });
        if (was == went.end())
            return false;
        rows.push_back("moved " + *was + " -> " + is + text(*was, is));
        went.erase(was);
        return true;
    });
    for (const auto& path : went)
        rows.push_back("went " + path + text(path, "-"));
    for (const auto& path : came)
        rows.push_back("came " + path + text("-", path));
    auto both = before;
    both[""].isFolder = true;
    for (const auto& [path, item] : both) {
        bool isThere = true;
        for (auto each = path; isThere && !each.empty(); each = holderOf(each))
            isThere = isAlike(after, each, before.at(each));
        if (isThere && bytesOf(before, path) != bytesOf(after, path))
            rows.push_back((bytesOf(before, path) < bytesOf(after, path) ? "grew " : "shrank ") + path
                           + text(path, path));
    }
    return inOrder(rows);
}

class Changing {
public:
    explicit Changing(unsigned seed) : random_(seed) {
        for (int i = 0; i < 120; ++i)
            add();
    }

    const Disk& disk() const { return disk_; }

    void add() {
        const auto folders = paths([](const Item& item) { return item.isFolder; });
        const auto holder = below(3) == 0 || folders.empty() ? "" : folders[below(folders.size())] + "/";
        put(holder + "n" + std::to_string(++count_),
            {.isFolder = below(3) == 0, .bytes = 0, .inode = ++inode_, .minute = static_cast<int>(below(3))});
    }

    void change() {
        const auto all = paths([](const Item&) { return true; });
        if (all.empty())
            return;
        const auto path = all[below(all.size())];
        auto& item = disk_.at(path);
        switch (below(6)) {
        case 0:
            take(path);
            break;
        case 1:
        case 2: // renamed, sometimes to another folder, and sometimes touched on the way
            if (const auto target = all[below(all.size())];
                disk_.at(target).isFolder && target != path && !isIn(target, path))
                move(path, target + "/m" + std::to_string(++count_));
            break;
        case 3: // replaced by something else of that name
            take(path);
            put(path, {.isFolder = below(2) == 0, .bytes = 0, .inode = ++inode_, .minute = 0});
            break;
        case 4:
            add();
            break;
        default:
            if (!item.isFolder)
                item.bytes = 512 * below(9);
            item.minute += static_cast<int>(below(2));
        }
    }

private:
    std::size_t below(std::size_t limit) {
        return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random_);
    }

    std::vector<std::string> paths(const std::function<bool(const Item&)>& wanted) const {
        std::vector<std::string> found;
        for (const auto& [path, item] : disk_)
            if (wanted(item))
                found.push_back(path);
        return found;
    }

    void put(const std::string& path, Item item) {
        item.bytes = item.isFolder ? 0 : 512 * below(9);
        disk_[path] = item;
    }

    void take(const std::string& path) {
        std::erase_if(disk_, [&](const auto& each) { return each.first == path || isIn(each.first, path); });
    }

    void move(const std::string& from, const std::string& to) {
        Disk moved;
        for (const auto& [path, item] : disk_)
            if (path == from || isIn(path, from))
                moved[to + path.substr(from.size())] = item;
        take(from);
        disk_.merge(moved);
    }

    std::mt19937 random_;
    int count_ = 0;
    std::uint64_t inode_ = 100;
    Disk disk_;
};

TEST(ScanComparison, AgreesWithADifferenceByPaths) {
    std::size_t moves = 0;
    for (unsigned seed = 1; seed <= 60; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Changing changing(seed);
        const auto before = changing.disk();
        for (unsigned i = 0; i < seed; ++i)
            changing.change();
        const auto rows = compared(before, changing.disk());
        EXPECT_EQ(inOrder(rows), difference(before, changing.disk()));
        moves += static_cast<std::size_t>(
            std::ranges::count_if(rows, [](const std::string& row) { return row.starts_with("moved"); }));
        EXPECT_TRUE(compared(before, before).empty());
    }
    EXPECT_GT(moves, 100);
}

TEST(ScanComparison, ListsTheLargestChangeFirstAndWhatHoldsItBeforeIt) {
    const Disk before{{"a", {.isFolder = true}}, {"a/old", {.bytes = 5000}}, {"b", {.bytes = 900}}};
    const Disk after{{"a", {.isFolder = true}},   {"a/old", {.bytes = 100}},     {"b", {.bytes = 900}},
                     {"new", {.isFolder = true}}, {"new/file", {.bytes = 7000}}, {"none", {}}};
    EXPECT_EQ(compared(before, after), (Rows{"came new 0 7000", "shrank a 5000 100", "shrank a/old 5000 100",
                                             "grew  5900 8000", "came none 0 0"}));
}

TEST(ScanComparison, TakesNothingForMovedThatOnlyHasTheNumber) {
    const Disk file{{"old", {.bytes = 512, .inode = 7, .minute = 1}}};
    for (const auto& [item, row] :
         std::map<std::string, Item>{{"same", {.bytes = 512, .inode = 7, .minute = 1}},
                                     {"other time", {.bytes = 512, .inode = 7, .minute = 2}},
                                     {"other size", {.bytes = 1024, .inode = 7, .minute = 1}},
                                     {"a folder", {.isFolder = true, .inode = 7, .minute = 1}}}) {
        const auto rows = compared(file, {{"new", row}});
        EXPECT_EQ(std::ranges::any_of(rows, [](const auto& each) { return each.starts_with("moved"); }),
                  item == "same")
            << item;
    }
    const Disk unknown{{"old", {.bytes = 512, .minute = 1}}};
    EXPECT_EQ(compared(unknown, {{"new", unknown.at("old")}}), (Rows{"went old 512 0", "came new 0 512"}))
        << "no inode number, as in scans from elsewhere";
}

TEST(ScanComparison, PairsUpWhatIsInAMovedFolder) {
    const Disk before{
        {"old", {.isFolder = true, .inode = 7}}, {"old/a", {.bytes = 512}}, {"old/b", {.bytes = 512}}};
    const auto earlier = scanned(before);
    auto later = scanned(
        {{"new", {.isFolder = true, .inode = 7}}, {"new/a", {.bytes = 1024}}, {"new/c", {.bytes = 512}}});
    later.device = earlier.device + 1; // as btrfs may number a volume after the next start
    const auto comparison = ScanComparison::between(earlier, later);
    EXPECT_EQ(rowsOf(comparison, earlier, later), (Rows{"grew  1024 1536", "moved old -> new 1024 1536"}));
    std::map<std::string, std::string> counterparts;
    for (NodeIndex node = 0; node < later.count(); ++node)
        if (const auto was = comparison.counterparts[node]; was != FileTree::noParent)
            counterparts[later.walkedPath(node)] = earlier.walkedPath(was);
    EXPECT_EQ(counterparts,
              (std::map<std::string, std::string>{
                  {"/data", "/data"}, {"/data/new", "/data/old"}, {"/data/new/a", "/data/old/a"}}));
}

TEST(ScanComparison, ComparesNothingThatOnlyOneScanKnows) {
    const auto tree = [](NodeFlags closed, std::uint64_t bytes) {
        TreeBuilder builder("/data");
        const auto home = builder.folder(0, "home");
        const auto mail = builder.folder(home, "mail", closed);
        if (closed == NodeFlags{})
            builder.file(mail, "inbox", 9000);
        builder.file(builder.folder(home, "films"), "film", bytes);
        builder.file(builder.folder(0, "var"), "log", bytes);
        return builder.build();
    };
    for (const NodeFlags closed : {NodeFlags::unreadable, NodeFlags::otherVolume}) {
        for (const bool isClosedLater : {false, true}) {
            const auto before = tree(isClosedLater ? NodeFlags{} : closed, 1000);
            const auto after = tree(isClosedLater ? closed : NodeFlags{}, 3000);
            const auto comparison = ScanComparison::between(before, after);
            EXPECT_EQ(inOrder(rowsOf(comparison, before, after)),
                      (Rows{"grew home/films 1000 3000", "grew home/films/film 1000 3000",
                            "grew var 1000 3000", "grew var/log 1000 3000"}));
            EXPECT_FALSE(comparison.isComparable(0));
            EXPECT_TRUE(comparison.isComparable(after.children(0)[0])
                        != comparison.isComparable(after.children(0)[1]));
        }
        const auto closedTwice = tree(closed, 1000);
        EXPECT_TRUE(ScanComparison::between(closedTwice, closedTwice).changes.empty());
    }
}

TEST(ScanComparison, HasAnAnswerForRootsOfAnyKind) {
    TreeBuilder file("/data/file");
    file.tree.nodeFlags[0] = 0;
    file.tree.allocatedBytes[0] = 512;
    const auto single = file.build();
    EXPECT_TRUE(ScanComparison::between(single, single).changes.empty());
    const auto folder = scanned({{"a", {.bytes = 100}}});
    const auto changes = ScanComparison::between(single, folder).changes;
    ASSERT_EQ(changes.size(), 2);
    EXPECT_EQ(changes[0].kind, ChangeKind::went);
    EXPECT_EQ(changes[1].kind, ChangeKind::came);
}

} // namespace
} // namespace orbel
