// Entries whose key is a prefix plus a suffix.
#include "results/prefixed_entries.h"

#include <gtest/gtest.h>

namespace {

TEST(PrefixedEntries, WriteEachKindUnderTheJoinedKey) {
    FlatJson json;
    ASSERT_TRUE(json_open(json));
    EXPECT_TRUE(json_prefixed_flag(json, "x_channel_1_", "gated", true));
    EXPECT_TRUE(json_prefixed_count(json, "x_channel_1_", "frames", 4294967296u));
    EXPECT_TRUE(json_prefixed_real(json, "x_", "ratio", -0.5));
    EXPECT_TRUE(json_prefixed_text(json, "x_", "verdict", "FAIL"));
    EXPECT_EQ(json.text, "{\n"
                         "    \"x_channel_1_gated\": 1,\n"
                         "    \"x_channel_1_frames\": 4294967296,\n"
                         "    \"x_ratio\": -0.500000,\n"
                         "    \"x_verdict\": \"FAIL\",\n");
}

} // namespace
