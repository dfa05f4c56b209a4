// The least that a search for duplicates has to read, with nothing around it: duplicate-limit [THREADS] reads
// groups of paths from standard input, one path a line, an empty line after each group, and reads every file
// of a group once from start to end, all files of the group side by side, comparing each chunk with that of
// the group's first file. Prints how many files were equal to their first one. It finds no groups and parts
// none.

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr std::size_t chunkBytes = std::size_t{128} * 1024;
using Group = std::vector<std::string>;

std::vector<Group> readGroups(const char* list) {
    std::ifstream lines(list);
    std::vector<Group> groups;
    bool isNew = true;
    for (std::string line; std::getline(lines, line); isNew = line.empty()) {
        if (line.empty())
            continue;
        if (isNew)
            groups.emplace_back();
        groups.back().push_back(line);
    }
    return groups;
}

std::size_t equalFiles(const Group& group, char* first, char* other) {
    std::vector<int> files;
    for (const std::string& path : group) {
        files.push_back(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
        if (files.back() < 0) {
            std::perror(path.c_str());
            std::exit(1);
        }
    }
    std::vector<bool> isEqual(files.size(), true);
    for (ssize_t length = 1; length > 0;) {
        for (std::size_t i = 0; i < files.size(); ++i) {
            const ssize_t got = ::read(files[i], i == 0 ? first : other, chunkBytes);
            if (i == 0)
                length = got;
            else if (got != length
                     || std::memcmp(first, other, static_cast<std::size_t>(std::max<ssize_t>(got, 0))) != 0)
                isEqual[i] = false;
        }
    }
    for (const int file : files)
        ::close(file);
    return static_cast<std::size_t>(std::ranges::count(isEqual, true));
}

} // namespace

int main(int count, char** values) {
    if (count != 3) {
        std::fputs("usage: duplicate-limit LIST THREADS\n", stderr);
        return 2;
    }
    const auto groups = readGroups(values[1]);
    const int threads = std::atoi(values[2]);
    std::atomic<std::size_t> next = 0;
    std::atomic<std::size_t> equal = 0;
    const auto work = [&] {
        const auto first = std::make_unique<char[]>(chunkBytes);
        const auto other = std::make_unique<char[]>(chunkBytes);
        for (auto i = next++; i < groups.size(); i = next++)
            equal += equalFiles(groups[i], first.get(), other.get());
    };
    std::vector<std::thread> helpers;
    for (int i = 1; i < threads; ++i)
        helpers.emplace_back(work);
    work();
    for (auto& helper : helpers)
        helper.join();
    std::printf("%zu\n", equal.load());
}
