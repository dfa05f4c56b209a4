// Builds a tree to measure scanners on: make-tree home|flat|chains FOLDER [--entries N] [--seed N]
//
//   home    like a home folder that is in use: a random tree, one entry in eleven a folder, names, extensions
//   and
//           themes of real life, hard links inside and across folders. 1.1 million entries unless told
//           otherwise.
//   flat    10 folders of 50,000 files
//   chains  2,000 chains of 60 folders, 178,001 entries
//
// FOLDER must not exist yet. The tree is the same for the same seed. Nearly all files are empty or sparse: a
// scanner asks for their sizes, never for their content, and so the trees are quick to build and small.

#include "TreeNames.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orbel::benchmarks {

namespace {

[[noreturn]] void fail(std::string_view what, const std::string& path) {
    const int reason = errno;
    std::fprintf(stderr, "make-tree: cannot %.*s %s: %s\n", static_cast<int>(what.size()), what.data(),
                 path.c_str(), std::strerror(reason));
    std::exit(1);
}

/// Makes entries below one root and counts them. Not movable: folders that are open hang on it.
class TreeBuilder {
public:
    TreeBuilder(const std::string& root, std::uint64_t seed) : random_(seed) {
        if (::mkdir(root.c_str(), 0755) != 0)
            fail("create", root);
        root_ = ::open(root.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (root_ < 0)
            fail("open", root);
    }
    TreeBuilder(const TreeBuilder&) = delete;
    TreeBuilder& operator=(const TreeBuilder&) = delete;
    ~TreeBuilder() { ::close(root_); }

    Random& random() { return random_; }
    int root() const { return root_; }

    /// A new folder, opened. The caller leaves it with leaveFolder(), in reverse order.
    int enterFolder(int parent, const std::string& name) {
        pathEnds_.push_back(path_.size());
        path_ += path_.empty() ? name : '/' + name;
        if (::mkdirat(parent, name.c_str(), 0755) != 0)
            fail("create the folder", path_);
        const int folder = ::openat(parent, name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (folder < 0)
            fail("open", path_);
        count(name);
        ++folders_;
        sibling_.clear();
        deepest_ = std::max(deepest_, pathEnds_.size());
        return folder;
    }

    void leaveFolder(int folder) {
        ::close(folder);
        path_.resize(pathEnds_.back());
        pathEnds_.pop_back();
        sibling_.clear();
    }

    /// One more file in an open folder: mostly a sparse one, now and then a second name of an earlier file.
    void addFile(int folder, Theme theme, std::uint64_t ordinal) {
        const std::string name = fileName(random_, theme, ordinal);
        count(name);
        if (random_.oneIn(190) && addLink(folder, name))
            return;
        if (random_.oneIn(100)) {
            if (::symlinkat("../somewhere/else", folder, name.c_str()) != 0)
                fail("create the symbolic link", name);
            return;
        }
        const int file = ::openat(folder, name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
        if (file < 0)
            fail("create the file", name);
        fill(file, name);
        ::close(file);
        sibling_ = name;
        if (random_.oneIn(64))
            remembered_[random_.below(remembered_.size())] = path_.empty() ? name : path_ + '/' + name;
    }

    void report(const char* kind) const {
        std::printf(
            "%s: %llu entries, of them %llu folders, %llu second names of a file; names of %.1f bytes on "
            "average, %zu folders deep\n",
            kind, static_cast<unsigned long long>(entries_), static_cast<unsigned long long>(folders_),
            static_cast<unsigned long long>(links_),
            static_cast<double>(nameBytes_) / static_cast<double>(std::max<std::uint64_t>(entries_ - 1, 1)),
            deepest_);
    }

private:
    void count(const std::string& name) {
        ++entries_;
        nameBytes_ += name.size();
    }

    /// Links to the file before in the same folder, or to one remembered from any folder. False when there is
    /// none.
    bool addLink(int folder, const std::string& name) {
        const bool across = random_.oneIn(2);
        std::string& target = across ? remembered_[random_.below(remembered_.size())] : sibling_;
        if (target.empty())
            return false;
        if (::linkat(across ? root_ : folder, target.c_str(), folder, name.c_str(), 0) != 0)
            fail("link", target);
        target.clear(); // so that most have two names
        ++links_;
        return true;
    }

    void fill(int file, const std::string& name) {
        const std::uint64_t choice = random_.below(100);
        if (choice < 20)
            return;
        if (choice < 22) {
            const std::size_t length = 512 + random_.below(content_.size() - 512);
            if (::write(file, content_.data(), length) != static_cast<ssize_t>(length))
                fail("write", name);
            return;
        }
        const std::uint64_t magnitude = std::uint64_t{64} << random_.below(18);
        if (::ftruncate(file, static_cast<off_t>(magnitude + random_.below(magnitude))) != 0)
            fail("size", name);
    }

    Random random_;
    int root_ = -1;
    std::string path_; ///< of the folder that is open, from the root
    std::vector<std::size_t> pathEnds_;
    std::string sibling_; ///< the last file of the open folder
    std::array<std::string, 256> remembered_;
    std::array<char, 8192> content_{};
    std::uint64_t entries_ = 1;
    std::uint64_t folders_ = 1;
    std::uint64_t links_ = 0;
    std::uint64_t nameBytes_ = 0;
    std::size_t deepest_ = 0;
};

/// The shape of a home folder, laid out before anything is made so that the files of a folder are made
/// together, as they are in life: that decides how far a cold disk has to reach.
class HomeShape {
public:
    HomeShape(Random& random, std::uint64_t entries) {
        const std::uint64_t folders = std::max<std::uint64_t>(entries / 11, 1);
        std::vector<std::uint32_t> weights(folders);
        nextSibling_.resize(folders, none);
        firstChild_.resize(folders, none);
        std::uint64_t total = 0;
        for (std::uint64_t folder = 0; folder < folders; ++folder) {
            // Any earlier folder may be the parent: depths then spread around the logarithm of the count.
            if (folder > 0) {
                const std::uint64_t parent = random.below(folder);
                nextSibling_[folder] = firstChild_[parent];
                firstChild_[parent] = static_cast<std::uint32_t>(folder);
            }
            weights[folder] = fileWeight(random);
            total += weights[folder];
        }
        // Shares out the files by weight so that their sum is exact.
        const std::uint64_t files = entries - folders;
        total = std::max<std::uint64_t>(total, 1);
        files_.reserve(folders);
        std::uint64_t seen = 0;
        std::uint64_t given = 0;
        for (const std::uint32_t weight : weights) {
            seen += weight;
            const std::uint64_t due = files * seen / total;
            files_.push_back(static_cast<std::uint32_t>(due - given));
            given = due;
        }
    }

    void build(TreeBuilder& builder) const { buildFolder(builder, builder.root(), 0, Theme::documents); }

private:
    static constexpr std::uint32_t none = 0xffffffffU;

    static std::uint32_t fileWeight(Random& random) {
        const std::uint64_t kind = random.below(200);
        if (kind < 60)
            return 0;
        if (kind < 140)
            return static_cast<std::uint32_t>(1 + random.below(8));
        if (kind < 186)
            return static_cast<std::uint32_t>(5 + random.below(25));
        if (kind < 199)
            return static_cast<std::uint32_t>(20 + random.below(80));
        return static_cast<std::uint32_t>(200 + random.below(1300));
    }

    void buildFolder(TreeBuilder& builder, int folder, std::uint32_t index, Theme theme) const {
        for (std::uint64_t file = 0; file < files_[index]; ++file)
            builder.addFile(folder, theme, file);
        std::uint64_t ordinal = 0;
        for (std::uint32_t child = firstChild_[index]; child != none; child = nextSibling_[child]) {
            Random& random = builder.random();
            // A folder mostly holds what the folder above it holds.
            const bool changes = index == 0 || random.oneIn(4);
            const Theme below = changes ? static_cast<Theme>(random.below(themeCount)) : theme;
            const int opened = builder.enterFolder(folder, folderName(random, ordinal++));
            buildFolder(builder, opened, child, below);
            builder.leaveFolder(opened);
        }
    }

    std::vector<std::uint32_t> firstChild_;
    std::vector<std::uint32_t> nextSibling_;
    std::vector<std::uint32_t> files_;
};

void buildFlat(TreeBuilder& builder) {
    for (std::uint64_t index = 0; index < 10; ++index) {
        const auto theme = static_cast<Theme>(index % themeCount);
        const int folder = builder.enterFolder(builder.root(), folderName(builder.random(), index));
        for (std::uint64_t file = 0; file < 50'000; ++file)
            builder.addFile(folder, theme, file);
        builder.leaveFolder(folder);
    }
}

void buildChains(TreeBuilder& builder) {
    constexpr std::size_t depth = 60;
    for (std::uint64_t chain = 0; chain < 2'000; ++chain) {
        std::vector<int> opened{builder.root()};
        for (std::size_t level = 1; level <= depth; ++level) {
            const std::uint64_t ordinal = level == 1 ? chain : 0;
            opened.push_back(builder.enterFolder(opened.back(), folderName(builder.random(), ordinal)));
            if (level % 2 == 0 && level < depth)
                builder.addFile(opened.back(), Theme::source, 0);
        }
        for (; opened.size() > 1; opened.pop_back())
            builder.leaveFolder(opened.back());
    }
}

struct Arguments {
    std::string kind;
    std::string folder;
    std::uint64_t entries = 1'100'000;
    std::uint64_t seed = 1;
};

bool parse(int count, char** values, Arguments& arguments) {
    if (count < 3 || count % 2 == 0)
        return false;
    arguments.kind = values[1];
    arguments.folder = values[2];
    for (int index = 3; index < count; index += 2) {
        const std::string_view option = values[index];
        const std::string_view text = values[index + 1];
        std::uint64_t& number = option == "--seed" ? arguments.seed : arguments.entries;
        const auto parsed = std::from_chars(text.data(), text.data() + text.size(), number);
        if ((option != "--entries" && option != "--seed") || parsed.ec != std::errc{}
            || parsed.ptr != text.data() + text.size())
            return false;
    }
    return arguments.entries >= 1 && arguments.entries <= 1'000'000'000;
}

} // namespace

} // namespace orbel::benchmarks

int main(int count, char** values) {
    using namespace orbel::benchmarks;
    Arguments arguments;
    const bool understood = parse(count, values, arguments);
    if (!understood || (arguments.kind != "home" && arguments.kind != "flat" && arguments.kind != "chains")) {
        std::fputs("usage: make-tree home|flat|chains FOLDER [--entries N] [--seed N]\n", stderr);
        return 2;
    }
    TreeBuilder builder(arguments.folder, arguments.seed);
    if (arguments.kind == "home")
        HomeShape(builder.random(), arguments.entries).build(builder);
    else if (arguments.kind == "flat")
        buildFlat(builder);
    else
        buildChains(builder);
    builder.report(arguments.kind.c_str());
}
