// The fixed-capacity appender behind every sentence: it keeps what fits, cuts the rest silently
// and always leaves the text terminated.
#include "align/bounded_text.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstring>
#include <cwchar>
#include <string>

namespace {

void expect_terminated(const BoundedText& text) {
    ASSERT_LT(text.length, text.storage.size());
    EXPECT_EQ(text.storage[text.length], '\0');
    EXPECT_EQ(std::strlen(text.storage.data()), text.length);
}

TEST(DiagnosisBoundedText, AppendsConcatenate) {
    BoundedText text = bounded_text(64);
    bounded_append(text, "lag %+ld, ", 12L);
    bounded_append(text, "corr %.2f", 0.5);
    EXPECT_EQ(bounded_view(text), "lag +12, corr 0.50");
    EXPECT_EQ(text.length, 18U);
    EXPECT_EQ(text.storage.size(), 64U);
    expect_terminated(text);
}

TEST(DiagnosisBoundedText, TextBeyondCapacityIsCutSilently) {
    BoundedText text = bounded_text(8);
    bounded_append(text, "abc");
    bounded_append(text, "%s", "defghijk");
    EXPECT_EQ(bounded_view(text), "abcdefg"); // capacity 8 holds seven characters
    expect_terminated(text);
    bounded_append(text, "more");
    EXPECT_EQ(bounded_view(text), "abcdefg");
    expect_terminated(text);
}

TEST(DiagnosisBoundedText, ExactFitLeavesRoomOnlyForTheTerminator) {
    BoundedText text = bounded_text(6);
    bounded_append(text, "hello");
    EXPECT_EQ(bounded_view(text), "hello");
    bounded_append(text, "!");
    EXPECT_EQ(bounded_view(text), "hello");
    expect_terminated(text);
}

TEST(DiagnosisBoundedText, CapacityOfOneHoldsNothing) {
    BoundedText text = bounded_text(1);
    bounded_append(text, "x");
    EXPECT_EQ(bounded_view(text), "");
    expect_terminated(text);
}

TEST(DiagnosisBoundedText, CapacityOfZeroWritesNothing) {
    BoundedText text = bounded_text(0);
    bounded_append(text, "x");
    EXPECT_EQ(text.length, 0U);
    EXPECT_EQ(bounded_view(text), "");
}

TEST(DiagnosisBoundedText, ExplanationCapacityKeeps1399Characters) {
    BoundedText text = bounded_text(1400);
    const std::string long_text(2000, 'y');
    bounded_append(text, "%s", long_text.c_str());
    EXPECT_EQ(text.length, 1399U);
    EXPECT_EQ(bounded_view(text), long_text.substr(0, 1399));
    expect_terminated(text);
}

// Under the C locale a wide character outside ASCII has no multibyte form, so the conversion
// fails and nothing of it may remain.
TEST(DiagnosisBoundedText, FormattingErrorAppendsNothing) {
    ASSERT_NE(std::setlocale(LC_ALL, "C"), nullptr);
    const wchar_t euro[] = {static_cast<wchar_t>(0x20AC), L'\0'};
    BoundedText text = bounded_text(32);
    bounded_append(text, "kept");
    bounded_append(text, "lost %d %ls", 5, euro);
    EXPECT_EQ(bounded_view(text), "kept");
    expect_terminated(text);
    bounded_append(text, "+");
    EXPECT_EQ(bounded_view(text), "kept+");
}

} // namespace
