// Which pairs a batch machine takes (--shard K/N) and which earlier outputs a resumed batch keeps.
#include "batch_fixture.h"
#include "cli/batch_resume.h"
#include "cli/batch_shard.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

namespace {

TEST(BatchShard, ReadsKOfN) {
    const auto shard = parse_shard("2/5");
    ASSERT_TRUE(shard);
    EXPECT_EQ(shard->index, 2u);
    EXPECT_EQ(shard->count, 5u);
    EXPECT_EQ(shard_file_name(*shard), "shard-2-of-5.json");
    for (const char* bad :
         {"", "1", "1/", "/2", "2/2", "3/2", "0/0", "-1/2", "1/2x", " 1/2", "0/100001", "1.0/2"})
        EXPECT_FALSE(parse_shard(bad)) << bad;
    EXPECT_TRUE(parse_shard("0/1"));
    EXPECT_TRUE(parse_shard("99999/100000"));
}

TEST(BatchShard, EveryPairFallsInExactlyOneShard) {
    const std::size_t count = 3;
    for (std::size_t pair = 0; pair < 10; ++pair) {
        std::size_t takers = 0;
        for (std::size_t k = 0; k < count; ++k)
            takers += shard_takes({k, count}, pair) ? 1 : 0;
        EXPECT_EQ(takers, 1u) << pair;
        EXPECT_TRUE(shard_takes({pair % count, count}, pair));
    }
}

TEST(BatchResume, OutputsMustBeNewerThanEverySource) {
    const TempDir dir;
    const std::vector<std::string> outputs{dir.file("p.html"), dir.file("p.json")};
    const std::vector<std::string> sources{dir.file("r.wav"), dir.file("d.wav"),
                                           dir.file("c.json")};
    for (const std::string& path : sources)
        ASSERT_TRUE(write_text_file(path, "x"));
    EXPECT_FALSE(outputs_newer_than(outputs, sources)); // no outputs yet
    for (const std::string& path : outputs)
        ASSERT_TRUE(write_text_file(path, "x"));
    for (const std::string& path : sources)
        set_time(path, 1000);
    for (const std::string& path : outputs)
        set_time(path, 2000);
    EXPECT_TRUE(outputs_newer_than(outputs, sources));
    set_time(dir.file("c.json"), 2000); // the settings changed as the outputs were written
    EXPECT_FALSE(outputs_newer_than(outputs, sources));
    set_time(dir.file("c.json"), 1000);
    set_time(dir.file("d.wav"), 3000);
    EXPECT_FALSE(outputs_newer_than(outputs, sources));
    set_time(dir.file("d.wav"), 1000);
    set_time(dir.file("p.json"), 500);
    EXPECT_FALSE(outputs_newer_than(outputs, sources));
    set_time(dir.file("p.json"), 2000);
    EXPECT_TRUE(outputs_newer_than(outputs, sources));
    const std::vector<std::string> missing_source{dir.file("absent.wav")};
    EXPECT_FALSE(outputs_newer_than(outputs, missing_source));
}

} // namespace
