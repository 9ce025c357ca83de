// The README's GNU parallel recipe, run for real with the local machine standing in for the hosts
// (`-S 2/:`: two job slots on ':' the local machine): each shard on its own "host", then one merge,
// gives the rows a single machine gives.
#include "batch_fixture.h"

#include <gtest/gtest.h>

namespace {

constexpr const char* kParallel = "/usr/bin/parallel";

TEST(BatchParallelRecipe, ShardsOverHostsThenMergeEqualOneMachine) {
    if (!path_exists(kParallel)) GTEST_SKIP() << "GNU parallel is not installed";
    const BatchFolder f;
    f.manifest("p1,ref.wav,pass.wav\n"
               "f1,ref.wav,short.wav\n"
               "e1,ref.wav,other.wav\n"
               "m1,ref.wav,absent.wav\n"
               "p2,ref.wav,pass.wav\n");
    ASSERT_EQ(f.batch({"--manifest", "pairs.tsv", "--out", "single"}).exit_status, 0);
    const std::string command = std::string(SONALYX_EXE) +
                                " batch --manifest pairs.tsv --out spread/ --jobs 1 --shard {}/3";
    const ProcessOutput spread = run_process({kParallel, "--will-cite", "-S", "2/:", "--halt",
                                              "now,fail=1", command, ":::", "0", "1", "2"},
                                             f.dir.path());
    ASSERT_EQ(spread.exit_status, 0) << spread.err;
    for (const char* shard : {"0", "1", "2"})
        EXPECT_TRUE(path_exists(f.dir.file("spread/shard-" + std::string(shard) + "-of-3.json")));
    const ProcessOutput merge = f.batch({"--merge", "spread/"});
    EXPECT_EQ(merge.exit_status, 0) << merge.err;
    EXPECT_EQ(rows_without_times(read_rows(f.dir.file("spread/summary.json"))),
              rows_without_times(read_rows(f.dir.file("single/summary.json"))));
}

} // namespace
