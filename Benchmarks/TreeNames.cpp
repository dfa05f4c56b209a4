#include "TreeNames.h"

#include <array>
#include <cstdio>
#include <string_view>

namespace orbel::benchmarks {

namespace {

constexpr std::array<std::string_view, 64> words{
    "report",   "summary",  "invoice", "notes",   "budget",   "letter",  "draft",   "final",
    "index",    "main",     "utils",   "parser",  "tree",     "config",  "module",  "package",
    "helper",   "test",     "view",    "model",   "service",  "client",  "server",  "handler",
    "image",    "photo",    "holiday", "family",  "garden",   "summer",  "winter",  "journey",
    "album",    "track",    "live",    "session", "concert",  "remix",   "piano",   "guitar",
    "backup",   "archive",  "old",     "copy",    "template", "sample",  "example", "data",
    "settings", "profile",  "state",   "history", "bookmark", "storage", "shader",  "font",
    "theme",    "resource", "locale",  "message", "thread",   "inbox",   "sent",    "contact",
};

std::string_view word(Random& random) {
    return words[random.below(words.size())];
}

template <std::size_t count>
std::string_view oneOf(Random& random, const std::array<std::string_view, count>& choices) {
    return choices[random.below(count)];
}

std::string hexadecimal(std::uint64_t number, int digits) {
    std::array<char, 24> text{};
    std::snprintf(text.data(), text.size(), "%0*llx", digits, static_cast<unsigned long long>(number));
    return text.data();
}

/// One word or two, the ordinal, which keeps names apart, and an extension.
std::string worded(Random& random, char between, std::uint64_t twoWordsOneIn, std::uint64_t ordinal,
                   std::string_view extension) {
    std::string name(word(random));
    if (random.oneIn(twoWordsOneIn)) {
        name += between;
        name += word(random);
    }
    name += std::to_string(ordinal);
    name += extension;
    return name;
}

} // namespace

std::string fileName(Random& random, Theme theme, std::uint64_t ordinal) {
    static constexpr std::array<std::string_view, 8> documents{".pdf", ".docx", ".odt",  ".txt",
                                                               ".md",  ".xlsx", ".pptx", ".csv"};
    static constexpr std::array<std::string_view, 4> pictures{".jpg", ".JPG", ".png", ".heic"};
    static constexpr std::array<std::string_view, 4> music{".mp3", ".flac", ".ogg", ".m4a"};
    static constexpr std::array<std::string_view, 8> source{".cpp", ".h",  ".py",   ".rs",
                                                            ".c",   ".ts", ".html", ".o"};
    static constexpr std::array<std::string_view, 6> packages{".js",   ".json", ".map",
                                                              ".d.ts", ".mjs",  ".css"};
    static constexpr std::array<std::string_view, 6> settings{".conf", ".json", ".ini",
                                                              ".db",   ".xml",  ".log"};

    switch (theme) {
    case Theme::documents:
        return worded(random, ' ', 2, ordinal, oneOf(random, documents));
    case Theme::pictures:
        if (random.oneIn(2))
            return "DSC0" + std::to_string(1000 + ordinal) + std::string(oneOf(random, pictures));
        return "IMG_2019" + std::to_string(1000 + random.below(230)) + '_' + std::to_string(100000 + ordinal)
               + std::string(oneOf(random, pictures));
    case Theme::music:
        return std::to_string(ordinal) + ' ' + std::string(word(random)) + ' ' + std::string(word(random))
               + std::string(oneOf(random, music));
    case Theme::source:
        return worded(random, '_', 2, ordinal, oneOf(random, source));
    case Theme::packages:
        return worded(random, '-', 3, ordinal, oneOf(random, packages));
    case Theme::cache:
        return hexadecimal(random.next(), 16) + hexadecimal(ordinal, 4);
    case Theme::mail:
        return std::to_string(1500000000 + ordinal) + ".M" + std::to_string(random.below(1000)) + ",S";
    case Theme::settings:
        return worded(random, '-', 4, ordinal, oneOf(random, settings));
    }
    return {};
}

std::string folderName(Random& random, std::uint64_t ordinal) {
    std::string name(word(random));
    if (random.oneIn(3)) {
        name += '-';
        name += word(random);
    }
    // No file is called like this: each has a dot, a comma or twenty hexadecimal digits.
    return name + std::to_string(ordinal);
}

} // namespace orbel::benchmarks
