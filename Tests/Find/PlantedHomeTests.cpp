#include "Find/BrokenShortcutFinder.h"
#include "Find/DuplicateFinder.h"
#include "Find/EmptyFolderFinder.h"
#include "Find/LargeOldQuery.h"
#include "Find/RebuildableFinder.h"
#include "Safety/SafetyPolicy.h"
#include "Scan/TreeScanner.h"
#include "Support/Policies.h"
#include "Support/TemporaryFolder.h"
#include "Util/PathText.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <gtest/gtest.h>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace orbel {
namespace {

using test::TemporaryFolder;

/// What is made in one folder: files, and folders where the name ends in a slash.
using Plant = std::vector<std::string>;

/// The first path is the folder that a program makes again.
const std::vector<Plant> madeAgain{
    {"node_modules/", "package.json", "node_modules/x/index.js"},
    {"target/", "Cargo.toml", "target/debug/app"},
    {"target/", "pom.xml", "target/classes/A.class"},
    {"build/", "settings.gradle", "build/libs/a.jar"},
    {".venv/", "setup.py", ".venv/pyvenv.cfg", ".venv/lib/site-packages/x.py"},
    {"vendor/", "composer.json", "composer.lock", "vendor/x/a.php"},
    {"deps/", "mix.exs", "deps/x/a.ex"},
    {".terraform/", "main.tf", ".terraform/providers/x"},
    {"__pycache__/", "__pycache__/a.pyc"},
    {"tagged/", "tagged/CACHEDIR.TAG", "tagged/a"},
};

/// What looks like it, with a file in it that no program makes again.
const std::vector<Plant> nearMisses{
    {"node_modules/mine.js"},
    {"target/mine.txt", "cargo.toml"},
    {"build/src/mine.c", "settings.gradle", "build/libs/a.jar"},
    {"build/mine.c", "Makefile"},
    {"venv/mine.txt", "setup.py"},
    {"vendor/mine.go", "composer.json", "go.mod"},
    {"deps/mine.pdf", "package.json"},
    {".terraform/mine.tfstate", "main.txt"},
    {"__pycache__/mine.py", "__pycache__/a.pyc"},
    {"near/mine.txt", "near/cachedir.tag"},
    {"out/mine.c", "out/CMakeCache.txt"},
};

/// What stays wherever it lies; the first path is the thing itself.
const std::vector<Plant> secrets{
    {"passwords.kdbx"},
    {"key4.db"},
    {"wallet.dat"},
    {"id_ed25519"},
    {"release.jks"},
    {"box/", "box/cur/", "box/new/", "box/tmp/"},
    {"prefix/", "prefix/system.reg", "prefix/dosdevices/", "prefix/drive_c/users/"},
    {"restic/", "restic/config", "restic/data/", "restic/index/", "restic/keys/", "restic/snapshots/"},
    {"gnupg/", "gnupg/private-keys-v1.d/a.key", "gnupg/secring.gpg"},
};

/// A version-control folder: what it keeps may be nowhere else.
const std::vector<Plant> work{{".git/HEAD", ".git/refs/heads/", ".git/objects/"}, {".hg/store/a"}, {".git"}};

class PlantedHome {
public:
    explicit PlantedHome(unsigned seed) : random_(seed) {
        folders_ = {"code", "Documents/old", "stuff"};
        for (int i = 0; i < 40; ++i)
            plantOne();
    }

    const std::string& path() const { return home_.path(); }
    std::string path(const std::string& relative) const { return home_.path(relative); }
    const std::set<std::string>& secretPaths() const { return secretPaths_; }
    const std::set<std::string>& ownPaths() const { return ownPaths_; }

    /// The folders to be made again that hold nothing that stays and lie in no other such folder.
    std::vector<std::string> certainlyRebuildable() const {
        std::vector<std::string> found;
        for (const auto& folder : madeAgainPaths_) {
            const auto isIn = [&](const std::string& each) { return isPathInside(each, folder); };
            if (std::ranges::none_of(secretPaths_, isIn) && std::ranges::none_of(ownPaths_, isIn)
                && std::ranges::none_of(madeAgainPaths_, [&](const std::string& other) {
                       return other != folder && isPathInside(folder, other);
                   }))
                found.push_back(folder);
        }
        return found;
    }

private:
    std::size_t below(std::size_t limit) {
        return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random_);
    }

    /// Makes one of these in a folder of its own, or anywhere: then things lie in one another.
    std::string place(bool isNew) {
        auto folder = folders_[below(folders_.size())];
        if (isNew || below(3) == 0) {
            folder += "/f" + std::to_string(++count_);
            folders_.push_back(folder);
        }
        return folder + "/";
    }

    void make(const std::string& folder, const Plant& plant) {
        for (const auto& each : plant) {
            const auto path = home_.path(folder + each);
            if (std::filesystem::exists(path))
                continue;
            if (each.ends_with('/'))
                home_.folder(folder + each);
            else if (each.ends_with("CACHEDIR.TAG"))
                home_.file(folder + each, "Signature: 8a477f597d28d172789f06886806bc55\n");
            else if (each.ends_with("CMakeCache.txt"))
                home_.file(folder + each,
                           "#\nCMAKE_HOME_DIRECTORY:INTERNAL=" + std::string(parentPath(path)) + "\n");
            else
                home_.file(folder + each, "the same");
        }
    }

    bool isMadeAgain(const std::string& path) const {
        return std::ranges::any_of(madeAgainPaths_,
                                   [&](const std::string& each) { return isPathInside(path, each); });
    }

    void plantOne() {
        switch (below(5)) {
        case 0:
        case 1: {
            const auto& plant = madeAgain[below(madeAgain.size())];
            const auto folder = place(true);
            make(folder, plant);
            const auto inside = folder + plant.front();
            madeAgainPaths_.insert(home_.path(inside.substr(0, inside.size() - 1)));
            // Some are that only as long as nothing else lies in them.
            if (inside.ends_with("/build/"))
                folders_.push_back(inside + "libs");
            else if (!inside.ends_with("__pycache__/"))
                folders_.push_back(inside + "inner");
            return;
        }
        case 2: {
            const auto& plant = nearMisses[below(nearMisses.size())];
            const auto folder = place(true);
            make(folder, plant);
            for (const auto& each : plant)
                if (each.contains("mine") && !isMadeAgain(home_.path(folder)))
                    ownPaths_.insert(home_.path(folder + each));
            return;
        }
        case 3: {
            const auto& plant = secrets[below(secrets.size())];
            const auto folder = place(false);
            make(folder, plant);
            auto thing = folder + plant.front();
            if (thing.ends_with('/'))
                thing.pop_back();
            // What packages bring along under such a name are examples.
            if (!("/" + folder).contains("/node_modules/") && !("/" + folder).contains("/target/"))
                secretPaths_.insert(home_.path(thing));
            return;
        }
        default: {
            const auto folder = place(false);
            const auto& plant = work[below(work.size())];
            const auto thing = folder + plant.front().substr(0, plant.front().find('/'));
            if (ownPaths_.insert(home_.path(thing)).second)
                make(folder, plant);
            if (below(2) == 0)
                home_.folder(folder + "empty" + std::to_string(++count_) + "/inner");
            else
                home_.link(folder + "link" + std::to_string(++count_), "nowhere");
        }
        }
    }

    TemporaryFolder home_;
    std::mt19937 random_;
    int count_ = 0;
    std::vector<std::string> folders_;
    std::set<std::string> madeAgainPaths_;
    std::set<std::string> secretPaths_; ///< no list offers one, a part of one, or what holds one
    std::set<std::string> ownPaths_;    ///< is in nothing that is listed as rebuildable
};

/// What a move of the item would take, or take a part of.
std::string taken(const std::set<std::string>& staying, const std::string& item) {
    for (const auto& each : staying)
        if (isPathInside(each, item) || isPathInside(item, each))
            return each;
    return "";
}

TEST(PlantedHome, NoListOffersWhatHasToStay) {
    std::size_t rebuildable = 0;
    for (unsigned seed = 1; seed <= 60; ++seed) {
        const PlantedHome home(seed);
        const SafetyPolicy policy(home.path(), test::linuxOptions());
        const ScanCancellation never;
        const auto tree = TreeScanner::scan(home.path(), 2, never, nullptr).tree;
        const InUseChecker::OpenFiles openFiles;
        SCOPED_TRACE("seed " + std::to_string(seed));

        std::set<std::string> listed;
        for (const auto& row : RebuildableFinder().run(tree, policy, currentDate(), openFiles)) {
            EXPECT_EQ(taken(home.secretPaths(), row.item.path), "") << row.item.path;
            EXPECT_EQ(taken(home.ownPaths(), row.item.path), "") << row.item.path << ": " << row.evidence;
            EXPECT_EQ(taken(listed, row.item.path), "") << row.item.path;
            listed.insert(row.item.path);
        }
        for (const auto& folder : home.certainlyRebuildable())
            EXPECT_TRUE(listed.contains(folder)) << folder;
        rebuildable += listed.size();

        const auto expectHarmless = [&](const DeletionItem& item) {
            if (item.isSelectable()) {
                EXPECT_EQ(taken(home.secretPaths(), item.path), "") << item.id;
            }
        };
        for (const auto& row : EmptyFolderFinder().run(tree, policy, currentDate()))
            expectHarmless(row.item);
        for (const auto& row : BrokenShortcutFinder().run(tree, policy, currentDate()))
            expectHarmless(row.item);
        LargeOldQuery all;
        all.minimumBytes = 1;
        all.unusedFor = std::nullopt;
        for (const auto& row : all.run(tree, policy, currentDate(), openFiles))
            expectHarmless(row.item);
        DuplicateFinder every;
        every.minimumBytes = 1;
        for (const auto& group : every.run(tree, home.path()))
            for (const auto& file : group.files)
                if (const auto item = DuplicateGroup::itemOf(file, policy))
                    expectHarmless(*item);
    }
    EXPECT_GT(rebuildable, 100U) << "homes with nothing in them prove nothing";
}

} // namespace
} // namespace orbel
