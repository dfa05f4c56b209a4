#include "ChangeRequest.h"

#include <gtest/gtest.h>

namespace orbel {
namespace {

using enum ChangeRequest::Kind;

auto request(std::vector<std::string> words) {
    words.insert(words.begin(), "orbel");
    return changeRequestIn(words);
}

TEST(ChangeRequest, IsReadFromTheWholeLine) {
    EXPECT_EQ(request({"--trash", "a", "b"}), (ChangeRequest{trash, {"a", "b"}, false}));
    for (const auto& words : std::vector<std::vector<std::string>>{
             {"--dry-run", "--trash", "a"}, {"--trash", "--dry-run", "a"}, {"--trash", "a", "--dry-run"}})
        EXPECT_EQ(request(words), (ChangeRequest{trash, {"a"}, true}));
    EXPECT_EQ(request({"--trash", "--", "--dry-run", "-x", "--", "--trash"}),
              (ChangeRequest{trash, {"--dry-run", "-x", "--", "--trash"}, false}));
    EXPECT_EQ(request({"--trash", "a", "--", "-b"}), (ChangeRequest{trash, {"a", "-b"}, false}));
    EXPECT_EQ(request({"--put-back", "last"}), (ChangeRequest{putBack, {"last"}, false}));
    EXPECT_EQ(request({"--put-back", "--", "-id"}), (ChangeRequest{putBack, {"-id"}, false}));
    EXPECT_EQ(request({"--trash", "/"}), (ChangeRequest{trash, {"/"}, false})) << "the policy's to refuse";
    for (const auto& words : std::vector<std::vector<std::string>>{
             {}, {"--scan-json", "/"}, {"--", "--trash", "a"}, {"--dry-run"}})
        EXPECT_EQ(request(words), std::nullopt);
}

TEST(ChangeRequest, RefusesWhatItDoesNotUnderstand) {
    for (const auto& words : std::vector<std::vector<std::string>>{{"--trash"},
                                                                   {"--trash", "--dry-run"},
                                                                   {"--trash", ""},
                                                                   {"--trash", "a", ""},
                                                                   {"--trash", "."},
                                                                   {"--trash", "a/.."},
                                                                   {"--trash", "a/./"},
                                                                   {"--trash", "..//"},
                                                                   {"--trash", "a", "--dryrun"},
                                                                   {"--trash", "a", "-n"},
                                                                   {"--trash", "-"},
                                                                   {"--trash", "a", "--scan-json", "b"},
                                                                   {"--trash", "a", "--trash", "b"},
                                                                   {"--trash", "a", "--put-back", "b"},
                                                                   {"a", "--trash", "b"},
                                                                   {"--put-back"},
                                                                   {"--put-back", ""},
                                                                   {"--put-back", "a", "b"},
                                                                   {"--put-back", "a", "--dry-run"},
                                                                   {"--put-back", "--last"}})
        EXPECT_FALSE(request(words).has_value()) << testing::PrintToString(words);
}

} // namespace
} // namespace orbel
