// The HTML, HTML path and JSON string escapes, checked byte by byte.
#include "text_buffer_fixture.h"

#include <string>

namespace {

// Every byte from `first` to `last` (both included) in ascending order.
std::string byte_range(int first, int last) {
    std::string bytes;
    for (int b = first; b <= last; ++b)
        bytes += static_cast<char>(b);
    return bytes;
}

std::string without(const std::string& bytes, const std::string& removed) {
    std::string kept;
    for (char c : bytes) {
        if (removed.find(c) == std::string::npos) kept += c;
    }
    return kept;
}

using TextBufferHtml = TextBufferTest;

TEST_F(TextBufferHtml, EscapesEverySpecialCharacter) {
    ASSERT_TRUE(text_append_html(buffer, "a<b>\"c'&"));
    EXPECT_EQ(content(), "a&lt;b&gt;&quot;c&#39;&amp;");
}

TEST_F(TextBufferHtml, EachSpecialCharacterAlone) {
    const char* inputs[] = {"&", "<", ">", "\"", "'"};
    const char* outputs[] = {"&amp;", "&lt;", "&gt;", "&quot;", "&#39;"};
    for (int i = 0; i < 5; ++i) {
        text_buffer_free(buffer);
        ASSERT_TRUE(text_append_html(buffer, inputs[i]));
        EXPECT_EQ(content(), outputs[i]) << inputs[i];
    }
}

TEST_F(TextBufferHtml, EveryOtherByteAndMultiByteUtf8PassUnchanged) {
    const std::string others = without(byte_range(1, 255), "&<>\"'");
    ASSERT_TRUE(text_append_html(buffer, others.c_str()));
    EXPECT_EQ(content(), others);

    text_buffer_free(buffer);
    const std::string utf8 = "Gr\xc3\xbc\xc3\x9f"
                             "e \xe2\x80\x93 \xe9\x9f\xb3 \xf0\x9f\x98\x80";
    ASSERT_TRUE(text_append_html(buffer, utf8.c_str()));
    EXPECT_EQ(content(), utf8);
}

TEST_F(TextBufferHtml, AppendsAfterExistingTextWithoutTouchingIt) {
    ASSERT_TRUE(text_append(buffer, "<b>"));
    ASSERT_TRUE(text_append_html(buffer, "x&y"));
    ASSERT_TRUE(text_append(buffer, "</b>"));
    EXPECT_EQ(content(), "<b>x&amp;y</b>");
}

// An empty text appends nothing, so a fresh buffer stays unallocated.
TEST_F(TextBufferHtml, EmptyTextAppendsNothing) {
    ASSERT_TRUE(text_append_html(buffer, ""));
    ASSERT_TRUE(text_append_html_path(buffer, ""));
    ASSERT_TRUE(text_append_json(buffer, ""));
    EXPECT_EQ(buffer.data, nullptr);
    EXPECT_EQ(buffer.length, 0U);
    EXPECT_EQ(buffer.capacity, 0U);
}

using TextBufferHtmlPath = TextBufferTest;

TEST_F(TextBufferHtmlPath, BreakHintFollowsEachSeparator) {
    ASSERT_TRUE(text_append_html_path(buffer, "C:\\x/y.wav"));
    EXPECT_EQ(content(), "C:\\<wbr>x/<wbr>y.wav");
}

TEST_F(TextBufferHtmlPath, SpecialCharactersAndRepeatedSeparators) {
    ASSERT_TRUE(text_append_html_path(buffer, "/a&b//c<'d'>\\"));
    EXPECT_EQ(content(), "/<wbr>a&amp;b/<wbr>/<wbr>c&lt;&#39;d&#39;&gt;\\<wbr>");
}

TEST_F(TextBufferHtmlPath, OtherBytesPassUnchanged) {
    const std::string others = without(byte_range(1, 255), "&<>\"'/\\");
    ASSERT_TRUE(text_append_html_path(buffer, others.c_str()));
    EXPECT_EQ(content(), others);
}

using TextBufferJson = TextBufferTest;

TEST_F(TextBufferJson, ControlBytesUseLowerCaseUnicodeEscapes) {
    ASSERT_TRUE(text_append_json(buffer, "\x01"));
    EXPECT_EQ(content(), "\\u0001");
    text_buffer_free(buffer);
    ASSERT_TRUE(text_append_json(buffer, "\x1f"));
    EXPECT_EQ(content(), "\\u001f");
    text_buffer_free(buffer);
    ASSERT_TRUE(text_append_json(buffer, "\x7f"));
    EXPECT_EQ(content(), "\x7f");
}

TEST_F(TextBufferJson, QuoteBackslashTabLineFeedCarriageReturn) {
    ASSERT_TRUE(text_append_json(buffer, "say \"hi\"\tC:\\dir\nnext\r"));
    EXPECT_EQ(content(), "say \\\"hi\\\"\\tC:\\\\dir\\nnext\\r");
}

TEST_F(TextBufferJson, EveryByteBelow32) {
    const char hex[] = "0123456789abcdef";
    for (int b = 1; b < 32; ++b) {
        text_buffer_free(buffer);
        const char input[2] = {static_cast<char>(b), '\0'};
        ASSERT_TRUE(text_append_json(buffer, input));
        std::string expected = std::string("\\u00") + hex[b / 16] + hex[b % 16];
        if (b == 9) expected = "\\t";
        if (b == 10) expected = "\\n";
        if (b == 13) expected = "\\r";
        EXPECT_EQ(content(), expected) << "byte " << b;
    }
}

TEST_F(TextBufferJson, HighBytesPrintableAsciiAndSlashPassUnchanged) {
    const std::string high = byte_range(128, 255);
    ASSERT_TRUE(text_append_json(buffer, high.c_str()));
    EXPECT_EQ(content(), high);

    text_buffer_free(buffer);
    const std::string printable = without(byte_range(32, 127), "\"\\");
    ASSERT_NE(printable.find('/'), std::string::npos);
    ASSERT_TRUE(text_append_json(buffer, printable.c_str()));
    EXPECT_EQ(content(), printable);

    text_buffer_free(buffer);
    ASSERT_TRUE(text_append_json(buffer, "</script>"));
    EXPECT_EQ(content(), "</script>");
}

} // namespace
