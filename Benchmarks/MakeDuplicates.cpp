// Builds a folder to measure the search for duplicates on: make-duplicates FOLDER [--megabytes N] [--seed N]
//
// FOLDER must not exist yet. It gets about N MB (3,000 unless told otherwise) in files of 1 MB and more: a
// fifth like nothing else and of sizes of their own, then, of one size each,
//
//   sets/N     files whose heads and tails are alike, so that only reading them tells more: two to five
//   copies of
//              one content, and in every third set as many files again that differ from it in one byte around
//              the middle
//   different  many files that have nothing but their size in common
//   twins      many small sets of one and the same size
//
// The content is the same for the same seed and cannot be compressed.

#include "TreeNames.h"

#include <algorithm>
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

[[noreturn]] void fail(const char* what, const std::string& path) {
    const int reason = errno;
    std::fprintf(stderr, "make-duplicates: cannot %s %s: %s\n", what, path.c_str(), std::strerror(reason));
    std::exit(1);
}

class CorpusBuilder {
public:
    CorpusBuilder(std::string root, std::uint64_t seed) : root_(std::move(root)), random_(seed) {
        makeFolder(root_);
    }

    Random& random() { return random_; }
    std::uint64_t bytes() const { return bytes_; }
    std::size_t files() const { return files_; }

    void folder(const std::string& relative) const { makeFolder(root_ + '/' + relative); }

    /// A file of this content seed; `different` is the place of a byte that is another one than in its
    /// copies.
    void file(const std::string& relative, std::uint64_t content, std::size_t length,
              std::size_t different = SIZE_MAX) {
        fillChunk(content, length);
        if (different < length)
            content_[different] = static_cast<char>(~content_[different]);
        const std::string path = root_ + '/' + relative;
        const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
        if (file < 0)
            fail("create", path);
        for (std::size_t done = 0; done < length;) {
            const auto written = ::write(file, content_.data() + done, length - done);
            if (written <= 0)
                fail("write", path);
            done += static_cast<std::size_t>(written);
        }
        ::close(file);
        bytes_ += length;
        ++files_;
    }

private:
    static void makeFolder(const std::string& path) {
        if (::mkdir(path.c_str(), 0755) != 0)
            fail("create the folder", path);
    }

    void fillChunk(std::uint64_t content, std::size_t length) {
        Random bytes(content);
        content_.resize((length + 7) / 8 * 8);
        for (std::size_t i = 0; i < content_.size(); i += 8) {
            const std::uint64_t next = bytes.next();
            std::memcpy(content_.data() + i, &next, sizeof next);
        }
    }

    std::string root_;
    Random random_;
    std::vector<char> content_;
    std::uint64_t bytes_ = 0;
    std::size_t files_ = 0;
};

constexpr std::size_t megabyte = 1'000'000;

void addSet(CorpusBuilder& corpus, std::uint64_t number) {
    Random& random = corpus.random();
    const std::string folder = "sets/" + std::to_string(number);
    corpus.folder(folder);
    // Mostly music and pictures, now and then a film; no other set has the size.
    const std::size_t scale = random.oneIn(12) ? 60 * megabyte : 8 * megabyte;
    const std::size_t length = (megabyte + random.below(scale)) / 1024 * 1024 + number;
    const std::uint64_t content = random.next();
    const std::uint64_t copies = 2 + random.below(random.oneIn(4) ? 4 : 1);
    for (std::uint64_t i = 0; i < copies; ++i)
        corpus.file(folder + "/copy-" + std::to_string(i), content, length);
    if (number % 3 != 0)
        return;
    for (std::uint64_t i = 0; i < copies; ++i) {
        const std::size_t place = length / 3 + random.below(length / 3);
        corpus.file(folder + "/near-" + std::to_string(i), content, length, place);
    }
}

void build(const std::string& root, std::uint64_t megabytes, std::uint64_t seed) {
    CorpusBuilder corpus(root, seed);
    Random& random = corpus.random();
    const std::uint64_t wanted = megabytes * megabyte;

    corpus.folder("alone");
    for (std::uint64_t i = 0; corpus.bytes() < wanted / 5; ++i)
        corpus.file("alone/" + std::to_string(i), random.next(),
                    (megabyte + random.below(12 * megabyte)) / 1024 * 1024 + 512 + i % 512);
    corpus.folder("different");
    for (std::uint64_t i = 0; corpus.bytes() < wanted * 3 / 10; ++i)
        corpus.file("different/" + std::to_string(i), random.next(), megabyte + megabyte / 20);
    corpus.folder("twins");
    for (std::uint64_t i = 0; corpus.bytes() < wanted * 2 / 5; ++i) {
        const std::uint64_t content = random.next();
        corpus.file("twins/" + std::to_string(i) + "-a", content, 2 * megabyte);
        corpus.file("twins/" + std::to_string(i) + "-b", content, 2 * megabyte);
    }
    corpus.folder("sets");
    for (std::uint64_t i = 0; corpus.bytes() < wanted; ++i)
        addSet(corpus, i);
    std::printf("%zu files, %.1f MB\n", corpus.files(), static_cast<double>(corpus.bytes()) / 1e6);
}

std::uint64_t number(std::string_view text) {
    std::uint64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) {
        std::fprintf(stderr, "make-duplicates: not a number: %.*s\n", static_cast<int>(text.size()),
                     text.data());
        std::exit(2);
    }
    return value;
}

} // namespace

} // namespace orbel::benchmarks

int main(int count, char** values) {
    using namespace orbel::benchmarks;
    const std::vector<std::string> words(values + 1, values + count);
    std::uint64_t megabytes = 3000;
    std::uint64_t seed = 1;
    bool isRight = words.size() % 2 == 1;
    for (std::size_t i = 1; isRight && i < words.size(); i += 2) {
        if (words[i] == "--megabytes")
            megabytes = number(words[i + 1]);
        else if (words[i] == "--seed")
            seed = number(words[i + 1]);
        else
            isRight = false;
    }
    if (!isRight) {
        std::fputs("usage: make-duplicates FOLDER [--megabytes N] [--seed N]\n", stderr);
        return 2;
    }
    build(words[0], megabytes, seed);
}
