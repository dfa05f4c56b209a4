#include "Export/NcduExport.h"
#include "Saved/Compression.h"
#include "Saved/NcduImport.h"
#include "Saved/OpenScan.h"
#include "Support/MadeUpTree.h"
#include "Support/RunProgram.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <map>

namespace orbel {
namespace {

using test::MadeUpTree;

std::optional<std::expected<KeptScan, std::string>> imported(std::string_view text) {
    return scanFromNcdu(*textPieces(text));
}

/// Of an export's one entry, the root.
std::optional<std::expected<KeptScan, std::string>> importedEntries(const std::string& root) {
    return imported("[1,2,{}," + root + "]");
}

std::string errorOf(std::string_view text) {
    const auto kept = imported(text);
    return !kept ? "no export" : *kept ? "none" : kept->error();
}

std::string exportOf(const FileTree& tree, Date measuredAt) {
    std::string text;
    exportAsNcdu(tree, measuredAt, [&](std::string_view piece) { text += piece; });
    return text;
}

/// Takes away what the form of an export has no place for.
FileTree asFarAsExported(FileTree tree) {
    tree.requestedRootPath = tree.rootPath;
    tree.exclusions = {};
    tree.aliasNodes.clear();
    tree.unlistedEntries.clear();
    tree.unreadableCount = tree.datalessCount = tree.otherVolumeCount = 0;
    for (NodeIndex node = 0; node < tree.count(); ++node) {
        if (tree.modifiedMinutes[node] < 0)
            tree.modifiedMinutes[node] = FileTree::unknownTime;
        if (tree.isFolder(node))
            tree.logicalBytes[node] = tree.linkCounts[node] = 0;
        if (tree.linkCounts[node] < 2) {
            tree.linkCounts[node] = 1;
            tree.inodes[node] = 0;
        }
        tree.nodeFlags[node] = tree.flags(node).without(NodeFlags::mayShareBlocks).rawValue;
        tree.unreadableCount += tree.flags(node).contains(NodeFlags::unreadable) ? 1 : 0;
        tree.otherVolumeCount +=
            tree.flags(node).contains(NodeFlags::otherVolume) && !tree.isExcluded(node) ? 1 : 0;
    }
    tree.recomputeTotals();
    return tree;
}

const Date someTime{std::chrono::seconds(1'700'000'000)};

TEST(NcduImport, ReadsBackWhatIsExported) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        const auto tree = MadeUpTree(seed).tree();
        const auto kept = imported(exportOf(tree, someTime));
        ASSERT_TRUE(kept && *kept) << kept->error();
        const auto& [read, origin] = **kept;
        EXPECT_TRUE(test::described(read) == test::described(asFarAsExported(tree)));
        EXPECT_EQ(origin.measuredAt, someTime);
        EXPECT_TRUE(origin.program.starts_with("orbel "));
        EXPECT_TRUE(origin.machine.empty() && !origin.volume);
        const auto again = scanFromFile(scanFileBytes(read, origin));
        ASSERT_TRUE(again) << again.error();
        EXPECT_TRUE(test::described(again->tree) == test::described(read));
    }
}

TEST(NcduImport, TakesAnyFormOfTheTextAndSaysNothingThatItDoesNot) {
    const auto kept = imported(
        " [ 1 ,\t0 ,\r\n{\"other\" : [ { } , [ ] , {\"a\":[null,-1.5e+7,false,\"]}\"]} ] } ,"
        "[ { \"name\" : \"/d\\u0061ta/\", \"dev\":7, \"new\":{\"x\":[[[]]]} } ,"
        R"({"name":"\ud83d\ude00\u00e4\"\\\b\t","x\/":"\/","asize":5,"dsize":4096},)"
        R"({"name":"\ud800x\udc00\ud800\n","mtime":61.999},)"
        "{\"name\":\"\xFF\x01\",\"mtime\":-61,\"read_error\":true,\"notreg\":true},"
        R"([{"name":"inner","asize":4096,"dsize":4096,"dev":8,"excluded":"pattern"},)"
        R"({"name":"one","dsize":512,"ino":3,"hlnkc":true},{"name":"two","ino":3,"hlnkc":false}],)"
        R"({"name":"again","dsize":512,"ino":3,"dev":8,"nlink":3},{"name":"no inode","hlnkc":true,"dsize":1},)"
        R"([{"name":"x","ino":3,"nlink":2}]]  ] )"
        "\n");
    ASSERT_TRUE(kept && *kept) << kept->error();
    const auto& [tree, origin] = **kept;
    EXPECT_EQ(tree.rootPath, "/data");
    EXPECT_EQ(tree.device, 7);
    EXPECT_EQ(tree.allocated(0), 4096 + 512 + 1) << "hard links once, folders' own blocks not at all";
    EXPECT_EQ(origin, ScanOrigin());
    std::map<std::string, NodeIndex> nodes;
    for (NodeIndex node = 1; node < tree.count(); ++node)
        nodes[std::string(tree.nameBytes(node))] = node;
    const auto first = nodes.at("\U0001F600\u00E4\"\\\b\t");
    EXPECT_EQ(tree.logical(first), 5);
    EXPECT_FALSE(tree.isModifiedKnown(first));
    EXPECT_EQ(tree.modifiedMinutes[nodes.at("\uFFFDx\uFFFD\uFFFD\n")], 1);
    const auto odd = nodes.at("\xFF\x01");
    EXPECT_EQ(tree.modifiedMinutes[odd], -2);
    EXPECT_EQ(tree.flags(odd), NodeFlags::symlink | NodeFlags::unreadable);
    EXPECT_EQ(tree.unreadableCount, 1);
    EXPECT_EQ(tree.identity(nodes.at("one")).device, 8) << "as the folder that holds it";
    EXPECT_EQ(tree.hardLinkMembers.size(), 1);
    EXPECT_TRUE(tree.flags(nodes.at("one")).contains(NodeFlags::linkCountedElsewhere));
    EXPECT_EQ(tree.linkCount(nodes.at("two")), 1);
    EXPECT_TRUE(tree.excludedNodes.empty()) << "what was listed was not left out";
}

/// It gives an inode to every link but the first one that it met, and other bytes to none.
TEST(NcduImport, CountsTheLinksOfGduOnce) {
    const auto kept = imported(R"([1,2,{"progname":"gdu"},[{"name":"/r"},{"name":"a","dsize":512},)"
                               R"({"name":"b","dsize":512,"ino":3,"hlnkc":true},)"
                               R"({"name":"c","dsize":512,"ino":3,"hlnkc":true}]])");
    ASSERT_TRUE(kept && *kept) << kept->error();
    const auto& tree = (*kept)->tree;
    EXPECT_EQ(tree.allocated(0), 512);
    EXPECT_FALSE(tree.flags(1).contains(NodeFlags::linkCountedElsewhere));
    for (const NodeIndex node : {2, 3})
        EXPECT_TRUE(tree.flags(node).contains(NodeFlags::linkCountedElsewhere)) << node;
    EXPECT_TRUE(scanFromFile(scanFileBytes(tree, {})));
}

TEST(NcduImport, KnowsWhatWasNotEntered) {
    const auto kept =
        importedEntries(R"([{"name":"/"},{"name":"a","excluded":"pattern"},)"
                        R"({"name":"b","excluded":"pattern","asize":9,"dsize":9},)"
                        R"({"name":"c","excluded":"otherfs","dsize":9},)"
                        R"({"name":"d","excluded":"othfs"},{"name":"e","excluded":"kernfs"},)"
                        R"({"name":"f","excluded":"frmlnk"},[{"name":"g","read_error":true}]])");
    ASSERT_TRUE(kept && *kept) << kept->error();
    const auto& tree = (*kept)->tree;
    EXPECT_EQ(tree.excludedNodes, (std::unordered_set<NodeIndex>{1, 2}));
    EXPECT_EQ(tree.otherVolumeCount, 4);
    EXPECT_EQ(tree.unreadableIn(0), 1);
    EXPECT_EQ(tree.allocated(0), 0);
    for (NodeIndex node = 1; node < tree.count(); ++node)
        EXPECT_EQ(tree.isFolder(node), node != 2) << node;
    const auto file = importedEntries(R"({"name":"/a/file","dsize":7})");
    ASSERT_TRUE(file && *file);
    EXPECT_EQ((*file)->tree.allocated(0), 7);
}

TEST(NcduImport, TellsExportsFromOtherFiles) {
    for (const auto* text :
         {"", "[", "[1,2,3]", "[1,2", "[2,0,{},[{\"name\":\"/\"}]]", "{}", "[1.0,2,{", "[1,,{"})
        EXPECT_EQ(errorOf(text), "no export") << text;
    const std::string damaged = "The export is damaged";
    const std::string cut = "The export ends too early";
    const std::string deep = [] {
        std::string text = R"([1,2,{"x":)";
        return text + std::string(100'000, '[');
    }();
    const std::string nested = [] {
        std::string text = R"([1,2,{},[{"name":"/"})";
        for (int i = 0; i < 100'000; ++i)
            text += R"(,[{"name":"a"})";
        return text;
    }();
    const auto root = [](std::string_view rest) { return R"([1,2,{},[{"name":"/r"})" + std::string(rest); };
    for (const auto& [text, error] : std::vector<std::pair<std::string, std::string>>{
             {root("]]"), "none"},
             {root("]"), cut},
             {root("]]x"), damaged},
             {root("]],"), damaged},
             {root(",{}]]"), damaged},
             {root(R"(,{"name":".."}]])"), damaged},
             {root(R"(,{"name":"a/b"}]])"), damaged},
             {root(R"(,{"name":"a\u0000"}]])"), damaged},
             {root(R"(,{"name":"a\x"}]])"), damaged},
             {root(R"(,{"name":"a\u00g0"}]])"), damaged},
             {root(R"(,{"name":"a","dsize":-1}]])"), damaged},
             {root(R"(,{"name":"a","dsize":1.5}]])"), damaged},
             {root(R"(,{"name":"a","dsize":18446744073709551616}]])"), damaged},
             {root(R"(,{"name":"a","dsize":18446744073709551615},{"name":"b","dsize":1}]])"), damaged},
             {root(R"(,{"name":"a","dsize":4611686018427387904},[{"name":"b"},{"name":"c","dsize":1}]]])"),
              damaged},
             {R"([1,2,{"progname":")" + std::string(600'000, 'a') + R"(","progver":")"
                  + std::string(600'000, 'b') + R"("},[{"name":"/r"}]])",
              damaged},
             {root(R"(,{"name":"a","hlnkc":tru}]])"), damaged},
             {root(R"(,{"name":"a","x":}]])"), damaged},
             {root(R"(,{"name":")" + std::string(70'000, 'a') + R"("}]])"), damaged},
             {R"([1,2,{},[{"name":"relative"}]])",
              "The export does not say which folder it is of: its root has no absolute path"},
             {deep, damaged},
             {nested, damaged}})
        EXPECT_EQ(errorOf(text), error) << text.substr(0, 100);
}

TEST(NcduImport, BelievesNothingThatIsDamaged) {
    const auto text = exportOf(MadeUpTree(3).tree(), someTime).substr(0, 6000);
    const auto whole = text.substr(0, text.rfind(",\n")) + "]]]]]]]]]]";
    std::string small = whole;
    while (!imported(small) || !*imported(small)) {
        small.pop_back();
        ASSERT_GT(small.size(), 1000U);
    }
    for (std::size_t i = 0; i < small.size(); ++i) {
        const auto cut = imported(std::string_view(small).substr(0, i));
        EXPECT_FALSE(cut && *cut) << "the first " << i;
        for (const int change : {0xFF, 0x01, 0x20, 0x04}) {
            auto changed = small;
            changed[i] = static_cast<char>(changed[i] ^ change);
            const auto kept = imported(changed);
            if (kept && *kept) {
                EXPECT_TRUE(scanFromFile(scanFileBytes((*kept)->tree, (*kept)->origin))) << "byte " << i;
            }
        }
    }
}

/// What is opened is kept, exported and read again.
TEST(NcduImport, TakesOnlyWhatCanBeKeptAndExported) {
    std::string links = R"({"name":"whole","dsize":4611686018427387904,"ino":5,"nlink":9})";
    for (char name = 'a'; name < 'j'; ++name)
        links += R"(,{"name":")" + std::string(1, name) + R"(","dsize":1,"ino":5,"nlink":9})";
    for (const std::string timestamp : {"1", "1700000000000", "-9223372036854775807"}) {
        const auto kept =
            imported(R"([1,2,{"timestamp":)" + timestamp + R"(},[{"name":"/r"},)" + links + "]]");
        ASSERT_TRUE(kept && *kept) << kept->error();
        const auto& [tree, origin] = **kept;
        EXPECT_EQ(origin.measuredAt, timestamp == "1" ? Date(std::chrono::seconds(1)) : Date());
        EXPECT_EQ(tree.allocated(0), std::uint64_t{1} << 62U);
        const auto again = scanFromFile(scanFileBytes(tree, origin));
        EXPECT_TRUE(again && test::described(again->tree) == test::described(tree));
        EXPECT_EQ(errorOf(exportOf(tree, origin.measuredAt)), "none");
    }
}

TEST(NcduImport, TakesCompressedFilesWholeOrNotAtAll) {
    const test::TemporaryFolder home;
    const auto tree = MadeUpTree(5).tree();
    const auto plain = home.file("plain", exportOf(tree, someTime));
    const auto run = [&](const std::string& command) {
        ASSERT_EQ(test::runProgram({"sh", "-c", "cd \"$0\" && " + command, home.path()}).status, 0)
            << command;
    };
    run("gzip -k plain && head -c 500 plain | gzip > two.gz && tail -c +501 plain | gzip >> two.gz");
    run("head -c 3000 plain.gz > cut.gz && (cat plain.gz; echo rest) > rest.gz && echo '[1,2,3]' | gzip > "
        "other.gz");
    home.file("plain.zst", packed(exportOf(tree, someTime)).frame);
    run("head -c -2 plain.zst > cut.zst && head -c 20000 /dev/zero | gzip > zero.gz");
    run("(printf '[1,2,{'; head -c 300000000 /dev/zero | tr '\\0' ' ') | gzip -1 > bomb.gz");
    const auto expected = test::described(asFarAsExported(tree));
    for (const auto* name : {"plain", "plain.gz", "two.gz", "plain.zst"}) {
        const auto kept = openScan(home.path(name));
        ASSERT_TRUE(kept && *kept) << name;
        EXPECT_TRUE(test::described((*kept)->tree) == expected) << name;
        EXPECT_TRUE(isScan(home.path(name)));
    }
    for (const auto& [name, error] : std::map<std::string, std::string>{
             {"cut.gz", "The compressed file ends too early"},
             {"cut.zst", "The compressed file ends too early"},
             {"rest.gz", "The compressed file is damaged"},
             {"bomb.gz", "The compressed file holds more than can be true of a scan"}}) {
        const auto kept = openScan(home.path(name));
        ASSERT_TRUE(kept && !*kept) << name;
        EXPECT_EQ(kept->error(), error) << name;
    }
    for (const auto* name : {"other.gz", "zero.gz", "missing", ""})
        EXPECT_FALSE(openScan(home.path(name)) || isScan(home.path(name))) << name;
}

} // namespace
} // namespace orbel
