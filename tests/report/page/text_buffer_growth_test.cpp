// The growth rule, both as a pure computation and as seen through appends.
#include "text_buffer_fixture.h"

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace {

struct GrowthCase {
    std::uint64_t capacity;
    std::uint64_t need;
    std::uint64_t expected;
};

TEST(TextBufferGrownCapacity, FollowsTheRuleForEachCase) {
    const std::vector<GrowthCase> cases = {
        {0, 1, 256},           {0, 256, 256},      {0, 257, 512},   {0, 512, 512},
        {0, 513, 1024},        {0, 1000, 1024},    {256, 257, 512}, {256, 512, 512},
        {256, 513, 1024},      {512, 513, 1024},   {300, 301, 600}, {300, 601, 1200},
        {300, 1300, 2400},     {1, 2, 2},          {1, 3, 4},       {3, 4, 6},
        {256, 100000, 131072}, {1024, 1025, 2048}, {100, 101, 200}, {1000, 1001, 2000},
    };
    for (const GrowthCase& c : cases) {
        const auto grown = text_buffer_grown_capacity(c.capacity, c.need);
        ASSERT_TRUE(grown.has_value()) << c.capacity << " " << c.need;
        EXPECT_EQ(*grown, c.expected) << "capacity " << c.capacity << " need " << c.need;
    }
}

TEST(TextBufferGrownCapacity, KeepsACapacityThatAlreadyFits) {
    EXPECT_EQ(text_buffer_grown_capacity(256, 1), 256U);
    EXPECT_EQ(text_buffer_grown_capacity(256, 256), 256U);
    EXPECT_EQ(text_buffer_grown_capacity(700, 699), 700U);
}

TEST(TextBufferGrownCapacity, NonZeroCapacityAtLeastDoublesAndStaysMinimal) {
    for (std::uint64_t capacity = 1; capacity <= 2000; capacity += 37) {
        for (std::uint64_t need = capacity + 1; need <= 20 * capacity; need += capacity / 3 + 1) {
            const auto grown = text_buffer_grown_capacity(capacity, need);
            ASSERT_TRUE(grown.has_value());
            EXPECT_GE(*grown, 2 * capacity);
            EXPECT_GE(*grown, need);
            // One doubling fewer would not have been enough (or would be below twice the old).
            if (*grown > 2 * capacity) {
                EXPECT_LT(*grown / 2, need);
            }
        }
    }
}

TEST(TextBufferGrownCapacity, RefusesWhenDoublingWouldOverflow) {
    const std::uint64_t top = std::uint64_t{1} << 63;
    EXPECT_EQ(text_buffer_grown_capacity(0, top), top);
    EXPECT_FALSE(text_buffer_grown_capacity(0, top + 1).has_value());
    EXPECT_FALSE(text_buffer_grown_capacity(top, top + 1).has_value());
    EXPECT_FALSE(
        text_buffer_grown_capacity(3, std::numeric_limits<std::uint64_t>::max()).has_value());
}

using TextBufferGrowth = TextBufferTest;

TEST_F(TextBufferGrowth, EmptyAppendOnFreshBufferAllocates256AndHoldsJustTheNul) {
    ASSERT_TRUE(text_append(buffer, ""));
    ASSERT_NE(buffer.data, nullptr);
    EXPECT_EQ(buffer.capacity, 256U);
    EXPECT_EQ(buffer.length, 0U);
    EXPECT_EQ(buffer.data[0], '\0');
}

TEST_F(TextBufferGrowth, FirstAppendOf300GivesCapacity512ThenNeed513Gives1024) {
    ASSERT_TRUE(text_append(buffer, std::string(300, 'a').c_str()));
    EXPECT_EQ(buffer.capacity, 512U);
    EXPECT_EQ(buffer.length, 300U);
    ASSERT_TRUE(text_append(buffer, std::string(211, 'b').c_str()));
    EXPECT_EQ(buffer.capacity, 512U); // need 512 still fits
    ASSERT_TRUE(text_append(buffer, "c"));
    EXPECT_EQ(buffer.capacity, 1024U); // need 513
    EXPECT_EQ(buffer.length, 512U);
    EXPECT_EQ(content(), std::string(300, 'a') + std::string(211, 'b') + "c");
}

TEST_F(TextBufferGrowth, AppendCharFitsAtCapacityMinusTwoAndGrowsAtCapacityMinusOne) {
    ASSERT_TRUE(text_append(buffer, std::string(254, 'x').c_str()));
    ASSERT_EQ(buffer.capacity, 256U);
    ASSERT_EQ(buffer.length, buffer.capacity - 2);
    const char* before = buffer.data;
    ASSERT_TRUE(text_append_char(buffer, 'y'));
    EXPECT_EQ(buffer.capacity, 256U);
    EXPECT_EQ(buffer.data, before);
    ASSERT_EQ(buffer.length, buffer.capacity - 1);
    ASSERT_TRUE(text_append_char(buffer, 'z'));
    EXPECT_EQ(buffer.capacity, 512U);
    EXPECT_EQ(buffer.length, 256U);
    EXPECT_EQ(buffer.data[256], '\0');
    EXPECT_EQ(content(), std::string(254, 'x') + "yz");
}

TEST_F(TextBufferGrowth, CapacityDoublesExactlyWhenTheNulNoLongerFits) {
    std::vector<std::uint64_t> capacities;
    for (int i = 0; i < 70000; ++i) {
        const std::uint64_t before_length = buffer.length;
        const std::uint64_t before_capacity = buffer.capacity;
        ASSERT_TRUE(text_append_char(buffer, static_cast<char>('a' + i % 26)));
        if (buffer.capacity != before_capacity) {
            EXPECT_GT(before_length + 2, before_capacity);
            capacities.push_back(buffer.capacity);
        } else {
            EXPECT_LE(before_length + 2, before_capacity);
        }
    }
    const std::vector<std::uint64_t> expected = {256,  512,   1024,  2048,  4096,
                                                 8192, 16384, 32768, 65536, 131072};
    EXPECT_EQ(capacities, expected);
}

} // namespace
