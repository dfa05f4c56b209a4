#include "Export/NcduExport.h"
#include "Support/RunProgram.h"
#include "Support/TemporaryFolder.h"
#include "Support/TreeBuilder.h"
#include "Util/AppVersion.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <set>

namespace orbel {
namespace {

using nlohmann::json;

std::string exported(const FileTree& tree) {
    std::string text;
    exportAsNcdu(tree, Date(std::chrono::seconds(1'700'000'000)),
                 [&](std::string_view piece) { text += piece; });
    return text;
}

TEST(NcduExport, WritesAllThatItsFormHasAPlaceFor) {
    test::TreeBuilder builder;
    const auto folder = builder.folder(0, "a\"b\\c\n\x7F\xC3\xA4\xFF");
    builder.file(folder, "file", 4096);
    builder.tree.modifiedMinutes.back() = 10;
    builder.file(folder, "link", 0, NodeFlags::symlink);
    builder.tree.modifiedMinutes.back() = -10;
    builder.hardLink(0, "one", 8192, 77);
    builder.hardLink(folder, "two", 8192, 77);
    builder.folder(0, "shut", NodeFlags::unreadable);
    builder.folder(0, "disk", NodeFlags::otherVolume);
    builder.tree.excludedNodes.insert(builder.folder(0, "left", NodeFlags::otherVolume));
    builder.tree.device = 5;
    const std::string beginning = R"([1,2,{"progname":"orbel","progver":")" + appVersion()
                                  + R"(","timestamp":1700000000},)"
                                    "\n";
    EXPECT_EQ(exported(builder.build()),
              beginning
                  + "[{\"name\":\"/root\",\"dev\":5,\"mtime\":0},\n"
                    "[{\"name\":\"a\\\"b\\\\c\\u000a\\u007f\xC3\xA4\xFF\",\"mtime\":0},\n"
                    "{\"name\":\"two\",\"asize\":8192,\"dsize\":8192,\"ino\":77,\"nlink\":2,\"hlnkc\":true,"
                    "\"mtime\":0},\n"
                    "{\"name\":\"file\",\"asize\":4096,\"dsize\":4096,\"mtime\":600},\n"
                    "{\"name\":\"link\",\"asize\":0,\"dsize\":0,\"notreg\":true}],\n"
                    "{\"name\":\"one\",\"asize\":8192,\"dsize\":8192,\"ino\":77,\"nlink\":2,\"hlnkc\":true,"
                    "\"mtime\":0},\n"
                    "[{\"name\":\"shut\",\"mtime\":0,\"read_error\":true}],\n"
                    "{\"name\":\"disk\",\"mtime\":0,\"excluded\":\"otherfs\"},\n"
                    "{\"name\":\"left\",\"mtime\":0,\"excluded\":\"pattern\"}]]\n");
}

/// The bytes on disk of the files in a list of ncdu, each inode once, and the count of its entries.
void addUp(const json& list, std::set<std::uint64_t>& inodes, std::uint64_t& bytes, std::size_t& entries) {
    for (const auto& entry : list) {
        if (entry.is_array()) {
            addUp(entry, inodes, bytes, entries);
            continue;
        }
        ++entries;
        if (!entry.contains("ino") || inodes.insert(entry["ino"].get<std::uint64_t>()).second)
            bytes += entry.value("dsize", std::uint64_t{0});
    }
}

TEST(NcduExport, IsUnderstoodByNcdu) {
    if (test::runProgram({"ncdu", "--version"}).status != 0)
        GTEST_SKIP() << "ncdu is not installed";
    const test::TemporaryFolder home;
    for (int i = 0; i < 300; ++i)
        home.file("data/" + std::to_string(i % 7) + "/" + std::to_string(i) + "\xFF\n\"",
                  std::size_t{100} * static_cast<unsigned>(i));
    home.hardLink("data/again", "data/0/0\xFF\n\"");
    home.hardLink("data/3/again", "data/1/1\xFF\n\"");
    const auto ours = json::parse(test::runOrbel({"--scan-json", home.path("data")}).output);
    const auto made = test::runOrbel({"--export-ncdu", home.path("data"), home.path("export.json")});
    ASSERT_EQ(made.status, 0) << made.errors;
    const auto theirs =
        test::runProgram({"ncdu", "-f", home.path("export.json"), "-o", home.path("again.json")});
    ASSERT_EQ(theirs.status, 0) << theirs.errors;
    const auto again = json::parse(
        test::runProgram({"iconv", "-f", "latin1", "-t", "utf8", home.path("again.json")}).output);
    std::set<std::uint64_t> inodes;
    std::uint64_t bytes = 0;
    std::size_t entries = 0;
    addUp(again[3], inodes, bytes, entries);
    EXPECT_EQ(bytes, ours["allocatedBytes"]);
    EXPECT_EQ(entries, ours["entries"]);

    // The same of a scan that was kept, on standard output.
    test::runOrbel({"--scan-json", home.path("data"), "--save", home.path("kept.scan")});
    const auto kept = test::runOrbel({"--export-ncdu", home.path("kept.scan"), "-"});
    EXPECT_EQ(kept.status, 0);
    const auto entriesIn = [](const std::string& text) { // behind the line with the time of the scan
        return text.substr(text.find('\n'));
    };
    EXPECT_TRUE(entriesIn(kept.output)
                == entriesIn(test::runProgram({"cat", home.path("export.json")}).output));
}

} // namespace
} // namespace orbel
