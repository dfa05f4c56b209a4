// What a scan costs in bare system calls: scan-limit FOLDER [THREADS]
//
// Lists every folder with getdents64, asks statx for every entry relative to the open folder, and stores a
// row and the name. It totals nothing, merges nothing and settles no hard links, and so marks how far a real
// scanner is from what the kernel alone takes. The rest is done as well as is known: folders are opened
// relative to their parent and measured on their own descriptor, and all threads share one stack of folders.

#include <algorithm>
#include <array>
#include <charconv>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace orbel::benchmarks {

namespace {

constexpr unsigned wanted = STATX_TYPE | STATX_NLINK | STATX_MTIME | STATX_INO | STATX_SIZE | STATX_BLOCKS;

/// An open folder, closed when the last of its subfolders has been opened relative to it.
class OpenFolder {
public:
    explicit OpenFolder(int descriptor) : descriptor_(descriptor) {}
    OpenFolder(const OpenFolder&) = delete;
    OpenFolder& operator=(const OpenFolder&) = delete;
    ~OpenFolder() {
        if (descriptor_ >= 0)
            ::close(descriptor_);
    }
    int get() const { return descriptor_; }

private:
    int descriptor_;
};

/// A folder that is still to be listed.
struct Pending {
    std::shared_ptr<OpenFolder> parent;
    std::string name;
};

struct Row {
    std::uint64_t inode;
    std::uint64_t bytes;
    std::uint64_t blocks;
    std::int64_t modified;
    std::uint32_t links;
    std::uint32_t mode;
    std::uint32_t nameLength;
};

/// Values one after the other in pages, so that what is stored never moves and is never held twice.
template <typename Value>
class Pages {
public:
    void append(const Value* values, std::size_t count) {
        if (pages_.empty() || used_ + count > pageSize) {
            pages_.push_back(std::make_unique_for_overwrite<Value[]>(pageSize));
            used_ = 0;
        }
        std::copy_n(values, count, pages_.back().get() + used_);
        used_ += count;
    }

private:
    static constexpr std::size_t pageSize = (std::size_t{1} << 18U) / sizeof(Value);
    std::vector<std::unique_ptr<Value[]>> pages_;
    std::size_t used_ = 0;
};

/// The stack of folders to list, and the end of the work: nothing waits and nobody is listing.
class Work {
public:
    void add(std::vector<Pending>& folders) {
        if (folders.empty())
            return;
        {
            const std::scoped_lock lock(mutex_);
            std::ranges::move(folders, std::back_inserter(stack_));
        }
        if (folders.size() == 1)
            available_.notify_one();
        else
            available_.notify_all();
        folders.clear();
    }

    /// The next folder, for a thread that has finished its last one. False when the work is over.
    bool take(Pending& folder, bool wasBusy) {
        std::unique_lock lock(mutex_);
        if (wasBusy && --busy_ == 0 && stack_.empty())
            available_.notify_all();
        available_.wait(lock, [this] { return !stack_.empty() || busy_ == 0; });
        if (stack_.empty())
            return false;
        folder = std::move(stack_.back());
        stack_.pop_back();
        ++busy_;
        return true;
    }

private:
    std::mutex mutex_;
    std::condition_variable available_;
    std::vector<Pending> stack_;
    int busy_ = 0;
};

/// What one thread does and stores.
class Scanner {
public:
    explicit Scanner(Work& work) : work_(work) {}

    void run() {
        Pending folder;
        for (bool wasBusy = false; work_.take(folder, wasBusy); wasBusy = true)
            list(folder);
    }

    std::uint64_t entries() const { return entries_; }
    std::uint64_t unreadable() const { return unreadable_; }

private:
    /// The kernel's record of one entry up to the name, which ends in a zero byte.
    struct Record {
        std::uint64_t inode;
        std::int64_t offset;
        std::uint16_t length;
        std::uint8_t type;
    };
    static constexpr std::size_t nameOffset = 19;

    void list(const Pending& folder) {
        const int parent = folder.parent ? folder.parent->get() : AT_FDCWD;
        const int descriptor = ::openat(parent, folder.name.c_str(),
                                        O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK);
        if (descriptor < 0) {
            ++unreadable_;
            return;
        }
        const auto opened = std::make_shared<OpenFolder>(descriptor);
        store(descriptor, "", AT_EMPTY_PATH, folder.name);
        for (;;) {
            const long length = ::syscall(SYS_getdents64, descriptor, buffer_.data(), buffer_.size());
            if (length < 0)
                ++unreadable_;
            if (length <= 0)
                break;
            storeBatch(opened, static_cast<std::size_t>(length));
        }
        work_.add(found_);
    }

    void storeBatch(const std::shared_ptr<OpenFolder>& folder, std::size_t length) {
        for (std::size_t position = 0; position < length;) {
            Record record{};
            std::memcpy(&record, buffer_.data() + position, nameOffset);
            const char* const name = buffer_.data() + position + nameOffset;
            position += record.length;
            const std::string_view text(name);
            if (text == "." || text == "..")
                continue;
            if (record.type == DT_DIR)
                found_.push_back({.parent = folder, .name = std::string(text)});
            else
                store(folder->get(), name, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, text);
        }
    }

    void store(int folder, const char* name, int flags, std::string_view text) {
        struct statx raw {};
        if (::statx(folder, name, flags, wanted, &raw) != 0) {
            ++unreadable_;
            return;
        }
        const Row row{.inode = raw.stx_ino,
                      .bytes = raw.stx_size,
                      .blocks = raw.stx_blocks,
                      .modified = raw.stx_mtime.tv_sec,
                      .links = raw.stx_nlink,
                      .mode = raw.stx_mode,
                      .nameLength = static_cast<std::uint32_t>(text.size())};
        rows_.append(&row, 1);
        names_.append(text.data(), text.size());
        ++entries_;
    }

    Work& work_;
    std::uint64_t entries_ = 0;
    std::uint64_t unreadable_ = 0;
    std::vector<Pending> found_;
    Pages<Row> rows_;
    Pages<char> names_;
    alignas(8) std::array<char, std::size_t{64} * 1024> buffer_{};
};

/// Every folder on the stack keeps its parent open; the usual limit of 1024 is soon reached.
void raiseDescriptorLimit() {
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) == 0) {
        limit.rlim_cur = limit.rlim_max;
        ::setrlimit(RLIMIT_NOFILE, &limit);
    }
}

} // namespace

} // namespace orbel::benchmarks

int main(int count, char** values) {
    using namespace orbel::benchmarks;
    unsigned threads = 16;
    const std::string_view wish = count == 3 ? values[2] : "16";
    const auto parsed = std::from_chars(wish.data(), wish.data() + wish.size(), threads);
    if (count < 2 || count > 3 || parsed.ec != std::errc{} || parsed.ptr != wish.data() + wish.size()
        || threads == 0) {
        std::fputs("usage: scan-limit FOLDER [THREADS]\n", stderr);
        return 2;
    }
    raiseDescriptorLimit();

    Work work;
    std::vector<Pending> root(1);
    root.front().name = values[1];
    work.add(root);
    std::vector<std::unique_ptr<Scanner>> scanners;
    for (unsigned index = 0; index < threads; ++index)
        scanners.push_back(std::make_unique<Scanner>(work));
    std::vector<std::thread> running;
    for (const auto& scanner : scanners)
        running.emplace_back(&Scanner::run, scanner.get());
    for (std::thread& thread : running)
        thread.join();

    std::uint64_t entries = 0;
    std::uint64_t unreadable = 0;
    for (const auto& scanner : scanners) {
        entries += scanner->entries();
        unreadable += scanner->unreadable();
    }
    std::printf("%llu entries, %llu unreadable\n", static_cast<unsigned long long>(entries),
                static_cast<unsigned long long>(unreadable));
    return unreadable == 0 ? 0 : 1;
}
