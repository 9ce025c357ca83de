// The batch's process runner: every child's exit status or ending signal, its standard error
// captured apart from the others', a child that cannot be started, and the limit on how many run
// at once.
#include "cli/batch_jobs.h"
#include "cli/batch_progress.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>

namespace {

Job shell(const std::string& script) {
    return {{"/bin/sh", "-c", script}};
}

TEST(BatchJobs, EachChildsStatusAndStandardErrorAreKeptApart) {
    const std::vector<Job> jobs{shell("echo one >&2; echo out; exit 0"),
                                shell("echo two >&2; exit 3"), shell("kill -9 $$"),
                                shell("kill -SEGV $$")};
    const std::vector<JobOutcome> outcomes = run_jobs(jobs, 2);
    ASSERT_EQ(outcomes.size(), 4u);
    EXPECT_TRUE(outcomes[0].started);
    EXPECT_EQ(outcomes[0].exit_status, 0);
    EXPECT_EQ(outcomes[0].signal, 0);
    EXPECT_EQ(outcomes[0].error_text, "one\n");
    EXPECT_EQ(outcomes[1].exit_status, 3);
    EXPECT_EQ(outcomes[1].error_text, "two\n");
    EXPECT_EQ(outcomes[2].exit_status, -1);
    EXPECT_EQ(outcomes[2].signal, SIGKILL);
    EXPECT_EQ(outcomes[3].signal, SIGSEGV);
}

TEST(BatchJobs, AProgramThatCannotBeRunExitsWith127) {
    const std::vector<Job> jobs{{{"/nonexistent/program"}}};
    const std::vector<JobOutcome> outcomes = run_jobs(jobs, 1);
    EXPECT_TRUE(outcomes[0].started);
    EXPECT_EQ(outcomes[0].exit_status, 127);
}

TEST(BatchJobs, LongStandardErrorIsCutAt64KiB) {
    const std::vector<Job> jobs{shell("head -c 100000 /dev/zero | tr '\\0' x >&2")};
    EXPECT_EQ(run_jobs(jobs, 1)[0].error_text, std::string(64 * 1024, 'x'));
}

// Four children of 0.4 s: two at a time take two rounds, four at a time one.
TEST(BatchJobs, NoMoreThanTheLimitRunAtOnce) {
    const std::vector<Job> jobs(4, shell("sleep 0.4"));
    std::size_t running = 0;
    std::size_t most = 0;
    JobHooks hooks;
    hooks.started = [&](std::size_t, int) { most = std::max(most, ++running); };
    hooks.finished = [&](std::size_t, const JobOutcome&) { --running; };
    double start = batch_seconds_now();
    run_jobs(jobs, 2, hooks);
    EXPECT_EQ(most, 2u);
    EXPECT_GE(batch_seconds_now() - start, 0.8);
    most = 0;
    start = batch_seconds_now();
    run_jobs(jobs, 4, hooks);
    EXPECT_EQ(most, 4u);
    EXPECT_LT(batch_seconds_now() - start, 0.8);
}

TEST(BatchJobs, EveryJobIsReportedOnceInTheOrderTheyEnd) {
    const std::vector<Job> jobs{shell("sleep 0.3"), shell("exit 0")};
    std::vector<std::size_t> ended;
    JobHooks hooks;
    hooks.finished = [&](std::size_t index, const JobOutcome&) { ended.push_back(index); };
    run_jobs(jobs, 2, hooks);
    EXPECT_EQ(ended, (std::vector<std::size_t>{1, 0}));
}

} // namespace
