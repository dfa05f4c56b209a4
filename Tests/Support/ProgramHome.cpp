#include "Support/ProgramHome.h"

#include <gtest/gtest.h>

namespace orbel::test {

nlohmann::json ProgramHome::json(std::vector<std::string> words, int status) const {
    const auto shown = testing::PrintToString(words);
    const auto result = run(std::move(words));
    EXPECT_EQ(result.status, status) << shown << "\n" << result.output << result.errors;
    auto parsed = nlohmann::json::parse(result.output, nullptr, false);
    EXPECT_FALSE(parsed.is_discarded()) << shown << "\n" << result.output << result.errors;
    return parsed;
}

} // namespace orbel::test
