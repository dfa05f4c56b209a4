#include "AppModel/LatestJob.h"

#include <gtest/gtest.h>
#include <latch>
#include <memory>
#include <QTest>
#include <string>

namespace orbel::test {
namespace {

/// Lets the event loop deliver until `heard` is this; fails when that takes too long.
void expectHeard(const std::string& heard, const char* wanted) {
    EXPECT_TRUE(QTest::qWaitFor([&] { return heard == wanted; }, 10'000)) << heard;
}

TEST(LatestJob, OnlyTheLastAnswerCountsAndNothingThatComesAfterIt) {
    std::string heard;
    LatestJob job("orbel.test");
    std::latch hasReported(1);
    std::latch mayEnd(1);
    std::optional<LatestJob::Run> first;
    job.run(
        [&](const LatestJob::Run& run) {
            first = run;
            run.report([&] { heard += "reported too late "; });
            hasReported.count_down();
            mayEnd.wait();
            return std::string("first ");
        },
        [&](const std::string& answer) { heard += answer; });
    hasReported.wait();
    std::optional<LatestJob::Run> second;
    job.run(
        [&](const LatestJob::Run& run) {
            second = run;
            run.report([&] { heard += "report "; });
            return std::make_unique<std::string>("answer");
        },
        [&](const std::unique_ptr<std::string>& answer) {
            EXPECT_FALSE(job.isRunning());
            heard += *answer;
        });
    EXPECT_TRUE(job.isRunning());
    mayEnd.count_down();
    expectHeard(heard, "report answer");
    EXPECT_TRUE(first->isCancelled());
    EXPECT_FALSE(second->isCancelled());
    for (const auto& run : {*first, *second})
        run.report([&] { heard += "?"; });
    QTest::qWait(20);
    EXPECT_EQ(heard, "report answer");
}

TEST(LatestJob, WhatIsStoppedAnswersAndWhatIsDroppedDoesNot) {
    std::string heard;
    auto job = std::make_unique<LatestJob>("orbel.test");
    const auto untilCancelled = [](const LatestJob::Run& run) {
        while (!run.isCancelled())
            QThread::msleep(1);
    };
    bool hasEnded = false;
    job->run(
        [&](const LatestJob::Run& run) {
            untilCancelled(run);
            hasEnded = true;
        },
        [&] { heard += "stopped"; });
    job->stopAndWait();
    EXPECT_TRUE(hasEnded && job->isStopping());
    expectHeard(heard, "stopped");

    job->run(untilCancelled, [&] { heard += "?"; });
    job->drop();
    EXPECT_FALSE(job->isRunning());
    job->run([] {}, [&] { heard += "?"; });
    job.reset();
    QTest::qWait(20);
    EXPECT_EQ(heard, "stopped");
}

TEST(LatestJob, EachAnswerOfWhatIsAddedCountsUntilItIsDropped) {
    int answers = 0;
    LatestJob job("orbel.test");
    const auto count = [&](int answer) { answers += answer; };
    for (int i = 0; i < 3; ++i)
        job.add([] { return 1; }, count);
    EXPECT_TRUE(QTest::qWaitFor([&] { return answers == 3; }, 10'000));
    job.add([] { return 100; }, count);
    job.drop();
    job.add([] { return 1; }, count);
    EXPECT_TRUE(QTest::qWaitFor([&] { return answers == 4; }, 10'000));
}

} // namespace
} // namespace orbel::test
