// Spreading a batch over machines (--shard K/N, then --merge) gives the same rows as one machine,
// and a resumed batch runs only the pairs whose outputs are missing or older than their inputs.
#include "batch_fixture.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace {

const char* const kSixPairs = "p1,ref.wav,pass.wav\n"
                              "f1,ref.wav,short.wav\n"
                              "e1,ref.wav,other.wav\n"
                              "m1,ref.wav,absent.wav\n"
                              "p2,ref.wav,pass.wav\n"
                              "f2,ref.wav,short.wav\n";

TEST(BatchShards, ShardsMergedEqualOneMachineRowForRow) {
    const BatchFolder f;
    f.manifest(kSixPairs);
    ASSERT_EQ(f.batch({"--manifest", "pairs.tsv", "--out", "one"}).exit_status, 0);
    for (const char* shard : {"0/4", "1/4", "2/4", "3/4"}) {
        const ProcessOutput run =
            f.batch({"--manifest", "pairs.tsv", "--out", "many/", "--shard", shard, "--jobs", "1"});
        EXPECT_EQ(run.exit_status, 0) << shard << run.err;
    }
    EXPECT_EQ(
        rows_without_times(read_rows(f.dir.file("many/shard-1-of-4.json"))),
        rows_without_times(std::vector<BatchRow>{read_rows(f.dir.file("one/summary.json"))[1],
                                                 read_rows(f.dir.file("one/summary.json"))[5]}));
    EXPECT_FALSE(path_exists(f.dir.file("many/index.html")));
    const ProcessOutput merge = f.batch({"--merge", "many/", "--manifest", "pairs.tsv"});
    EXPECT_EQ(merge.exit_status, 0) << merge.err;
    EXPECT_EQ(merge.err, "");
    EXPECT_EQ(merge.out, "wrote many/index.html (6 pairs: 2 PASS, 2 FAIL, 2 ERROR)\n");
    EXPECT_EQ(rows_without_times(read_rows(f.dir.file("many/summary.json"))),
              rows_without_times(read_rows(f.dir.file("one/summary.json"))));
    EXPECT_TRUE(path_exists(f.dir.file("many/junit.xml")));
}

TEST(BatchShards, AShardPrintsItsOwnSummaryLine) {
    const BatchFolder f;
    f.manifest(kSixPairs);
    const ProcessOutput run =
        f.batch({"--manifest", "pairs.tsv", "--out", "s", "--shard", "1/2", "--exit-code"});
    EXPECT_EQ(run.exit_status, 2);
    EXPECT_EQ(run.out, "wrote s/shard-1-of-2.json (3 pairs: 0 PASS, 2 FAIL, 1 ERROR)\n");
}

TEST(BatchShards, AMergeNamesEachMissingShardAndExits1) {
    const BatchFolder f;
    f.manifest(kSixPairs);
    ASSERT_EQ(f.batch({"--manifest", "pairs.tsv", "--out", "s", "--shard", "1/3"}).exit_status, 0);
    const ProcessOutput merge = f.batch({"--merge", "s"});
    EXPECT_EQ(merge.exit_status, 1);
    EXPECT_EQ(merge.err, "warning: shard 0 of 3 is missing (no 's/shard-0-of-3.json')\n"
                         "warning: shard 2 of 3 is missing (no 's/shard-2-of-3.json')\n");
    EXPECT_EQ(merge.out, "wrote s/index.html (2 pairs: 1 PASS, 1 FAIL, 0 ERROR)\n");
    const std::string junit = read_text_file(f.dir.file("s/junit.xml"));
    EXPECT_NE(junit.find("classname=\"batch\""), std::string::npos) << junit;
}

TEST(BatchShards, AMergeNeedsShardFilesOfOneCount) {
    const BatchFolder f;
    f.manifest(kSixPairs);
    const ProcessOutput none = f.batch({"--merge", "."});
    EXPECT_EQ(none.exit_status, 1);
    EXPECT_EQ(none.err, "error: no shard files (shard-K-of-N.json) in '.'\n");
    ASSERT_TRUE(write_text_file(f.dir.file("shard-0-of-2.json"), "{}"));
    ASSERT_TRUE(write_text_file(f.dir.file("shard-0-of-3.json"), "{}"));
    const ProcessOutput mixed = f.batch({"--merge", "."});
    EXPECT_EQ(mixed.exit_status, 1);
    EXPECT_TRUE(mixed.err.rfind("error: '.' holds shard files of ", 0) == 0) << mixed.err;
}

long modified(const std::string& path) {
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0 ? info.st_mtim.tv_sec : -1;
}

TEST(BatchResume, RunsOnlyPairsWhoseOutputsAreMissingOrOlderThanTheirInputs) {
    const BatchFolder f;
    f.manifest("p,ref.wav,pass.wav\nq,ref.wav,short.wav\nr,ref.wav,other.wav\n");
    ASSERT_TRUE(write_text_file(f.dir.file("c.json"), "{}"));
    const std::vector<std::string> args{"--manifest", "pairs.tsv", "--out",   "o",
                                        "--config",   "c.json",    "--resume"};
    ASSERT_EQ(f.batch(args).exit_status, 0);
    const std::string first = rows_without_times(read_rows(f.dir.file("o/summary.json")));
    for (const char* input : {"ref.wav", "pass.wav", "short.wav", "other.wav", "c.json"})
        set_time(f.dir.file(input), 1000);
    for (const char* output : {"p.html", "p.json", "q.html", "q.json", "r.html", "r.json"})
        set_time(f.dir.file("o/" + std::string(output)), 2000);
    set_time(f.dir.file("short.wav"), 3000); // q's DUT changed after its outputs were written
    ASSERT_TRUE(::unlink(f.dir.file("o/r.html").c_str()) == 0); // r's page is gone
    const ProcessOutput resumed = f.batch(args);
    EXPECT_EQ(resumed.exit_status, 0) << resumed.err;
    EXPECT_EQ(resumed.out, "wrote o/index.html (3 pairs: 1 PASS, 1 FAIL, 1 ERROR)\n");
    EXPECT_EQ(modified(f.dir.file("o/p.json")), 2000);
    EXPECT_GT(modified(f.dir.file("o/q.json")), 3000);
    EXPECT_GT(modified(f.dir.file("o/r.json")), 3000);
    EXPECT_TRUE(path_exists(f.dir.file("o/r.html")));
    EXPECT_EQ(rows_without_times(read_rows(f.dir.file("o/summary.json"))), first);
    set_time(f.dir.file("c.json"), 1u << 31); // the settings changed: everything runs again
    ASSERT_EQ(f.batch(args).exit_status, 0);
    EXPECT_GT(modified(f.dir.file("o/p.json")), 3000);
}

} // namespace
