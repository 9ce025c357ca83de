// A growth that cannot be satisfied: the append fails and the buffer is left as it was.
#include "text_buffer_fixture.h"

#include "audio/out_of_memory.h"

#include <cstdint>
#include <limits>
#include <string>

// Under AddressSanitizer an impossible allocation must come back as a null pointer, as it does
// from the plain allocator, instead of ending the process.
#if defined(__SANITIZE_ADDRESS__)
#define SONALYX_TEST_ASAN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define SONALYX_TEST_ASAN 1
#endif
#endif
#ifdef SONALYX_TEST_ASAN
extern "C" const char* __asan_default_options() {
    return "allocator_may_return_null=1";
}
#endif

namespace {

using TextBufferFailure = TextBufferTest;

// The source holds only four bytes: reading any of the requested count would be caught by the
// sanitizer build, so the growth must fail before the copy.
const char source[4] = {'a', 'b', 'c', 'd'};
constexpr std::uint64_t huge_count = std::uint64_t{1} << 62;

TEST_F(TextBufferFailure, HugeAppendOnFreshBufferFailsAndAllocatesNothing) {
    EXPECT_FALSE(text_append_bytes(buffer, source, huge_count));
    EXPECT_EQ(buffer.data, nullptr);
    EXPECT_EQ(buffer.length, 0U);
    EXPECT_EQ(buffer.capacity, 0U);
}

TEST_F(TextBufferFailure, HugeAppendKeepsDataLengthCapacityAndContent) {
    const std::string text(300, 'r');
    ASSERT_TRUE(text_append(buffer, text.c_str()));
    const char* data = buffer.data;

    EXPECT_FALSE(text_append_bytes(buffer, source, huge_count));
    EXPECT_EQ(buffer.data, data);
    EXPECT_EQ(buffer.length, 300U);
    EXPECT_EQ(buffer.capacity, 512U);
    EXPECT_EQ(content(), text);
    EXPECT_EQ(buffer.data[300], '\0');

    // The buffer still works after the failure.
    ASSERT_TRUE(text_append(buffer, "!"));
    EXPECT_EQ(content(), text + "!");
}

std::size_t g_reported_bytes = 0;

void remember_request(std::size_t bytes) {
    g_reported_bytes = bytes;
}

TEST_F(TextBufferFailure, AGrowthThatFailsIsReportedWithItsSize) {
    const OutOfMemoryHandler previous = set_out_of_memory_handler(remember_request);
    g_reported_bytes = 0;
    EXPECT_FALSE(text_append_bytes(buffer, source, huge_count));
    set_out_of_memory_handler(previous);
    EXPECT_EQ(g_reported_bytes, std::size_t{1} << 63);
}

TEST_F(TextBufferFailure, CountWhoseNeedOverflowsIsRefused) {
    ASSERT_TRUE(text_append(buffer, "xy"));
    const char* data = buffer.data;
    EXPECT_FALSE(text_append_bytes(buffer, source, std::numeric_limits<std::uint64_t>::max()));
    EXPECT_FALSE(text_append_bytes(buffer, source, std::numeric_limits<std::uint64_t>::max() - 2));
    EXPECT_FALSE(text_append_bytes(buffer, source, std::numeric_limits<std::uint64_t>::max() - 3));
    EXPECT_EQ(buffer.data, data);
    EXPECT_EQ(buffer.length, 2U);
    EXPECT_EQ(buffer.capacity, 256U);
    EXPECT_EQ(content(), "xy");
}

} // namespace
