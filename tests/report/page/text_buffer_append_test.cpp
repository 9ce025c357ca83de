// Initialisation, release, and plain text and character appends.
#include "text_buffer_fixture.h"

#include <cstdint>
#include <cstring>
#include <random>
#include <string>

namespace {

TEST(TextBufferLifecycle, InitClearsEveryField) {
    char unrelated[4] = {};
    TextBuffer buffer{unrelated, 7, 9};
    text_buffer_init(buffer);
    EXPECT_EQ(buffer.data, nullptr);
    EXPECT_EQ(buffer.length, 0U);
    EXPECT_EQ(buffer.capacity, 0U);
}

TEST(TextBufferLifecycle, FreeOnAFreshBufferIsSafeAndRepeatable) {
    TextBuffer buffer;
    text_buffer_init(buffer);
    text_buffer_free(buffer);
    text_buffer_free(buffer);
    EXPECT_EQ(buffer.data, nullptr);
    EXPECT_EQ(buffer.length, 0U);
    EXPECT_EQ(buffer.capacity, 0U);
}

TEST(TextBufferLifecycle, FreeResetsFieldsAndTheBufferCanBeReused) {
    TextBuffer buffer;
    text_buffer_init(buffer);
    ASSERT_TRUE(text_append(buffer, std::string(600, 'q').c_str()));
    ASSERT_EQ(buffer.capacity, 1024U);
    text_buffer_free(buffer);
    EXPECT_EQ(buffer.data, nullptr);
    EXPECT_EQ(buffer.length, 0U);
    EXPECT_EQ(buffer.capacity, 0U);
    ASSERT_TRUE(text_append(buffer, "again"));
    EXPECT_EQ(buffer.capacity, 256U);
    EXPECT_STREQ(buffer.data, "again");
    text_buffer_free(buffer);
}

using TextBufferAppend = TextBufferTest;

TEST_F(TextBufferAppend, TextAndCharactersAreJoinedInOrder) {
    ASSERT_TRUE(text_append(buffer, "<p>"));
    ASSERT_TRUE(text_append_char(buffer, 'A'));
    ASSERT_TRUE(text_append(buffer, ""));
    ASSERT_TRUE(text_append(buffer, "\xc3\xa9</p>"));
    EXPECT_EQ(buffer.length, 10U);
    EXPECT_EQ(content(), "<p>A\xc3\xa9</p>");
    EXPECT_EQ(buffer.data[buffer.length], '\0');
}

TEST_F(TextBufferAppend, RawBytesMayHoldNulAndStopAtTheCount) {
    const char bytes[] = {'a', '\0', 'b', 'c', 'd'};
    ASSERT_TRUE(text_append_bytes(buffer, bytes, 3));
    EXPECT_EQ(buffer.length, 3U);
    EXPECT_EQ(content(), std::string("a\0b", 3));
    EXPECT_EQ(buffer.data[3], '\0');
}

// A random string of 0 to max_length non-NUL bytes, high bytes included.
std::string random_text(std::mt19937& rng, int max_length) {
    std::uniform_int_distribution<int> length(0, max_length);
    std::uniform_int_distribution<int> byte(1, 255);
    std::string text(static_cast<std::size_t>(length(rng)), ' ');
    for (char& c : text)
        c = static_cast<char>(byte(rng));
    return text;
}

// Smallest power of two that is at least 256 and holds `need` bytes.
std::uint64_t expected_capacity(std::uint64_t need) {
    std::uint64_t capacity = 256;
    while (capacity < need)
        capacity *= 2;
    return capacity;
}

TEST_F(TextBufferAppend, InvariantsHoldAfterManyRandomAppends) {
    std::mt19937 rng(20240611);
    std::uniform_int_distribution<int> operation(0, 2);
    std::uniform_int_distribution<int> number(-100000, 100000);
    std::string expected;
    for (int step = 0; step < 3000; ++step) {
        const std::string text = random_text(rng, 300);
        switch (operation(rng)) {
        case 0:
            ASSERT_TRUE(text_append(buffer, text.c_str()));
            expected += text;
            break;
        case 1:
            ASSERT_TRUE(text_append_char(buffer, text.empty() ? '!' : text[0]));
            expected += text.empty() ? '!' : text[0];
            break;
        default: {
            const int value = number(rng);
            ASSERT_TRUE(text_append_format(buffer, "[%d|%s]", value, text.c_str()));
            expected += "[" + std::to_string(value) + "|" + text + "]";
            break;
        }
        }
        ASSERT_NE(buffer.data, nullptr);
        ASSERT_LE(buffer.length + 1, buffer.capacity);
        ASSERT_EQ(buffer.data[buffer.length], '\0');
        ASSERT_EQ(buffer.length, expected.size());
        ASSERT_EQ(std::memcmp(buffer.data, expected.data(), expected.size()), 0);
        ASSERT_EQ(buffer.capacity, expected_capacity(buffer.length + 1));
    }
}

} // namespace
