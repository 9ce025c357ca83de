// The quick fixed-notation appends give exactly the characters of printf's "%.*f": on exact
// binary halves, near-halves, signed zeros, tiny negatives, huge values, subnormals and a million
// random values at the precisions the charts use.
#include "support/signal_gen.h"
#include "text_buffer_fixture.h"

#include <cmath>
#include <cstdio>
#include <limits>
#include <string>
#include <vector>

namespace {

using TextBufferFixed = TextBufferTest;

std::string printf_fixed(double value, int decimals) {
    std::vector<char> text(400);
    std::snprintf(text.data(), text.size(), "%.*f", decimals, value);
    return text.data();
}

// Values where a shortcut through binary arithmetic would round differently from printf.
const std::vector<double> kAwkward{0.0,
                                   -0.0,
                                   0.125,
                                   -0.125,
                                   0.375,
                                   2.675,
                                   1.005,
                                   99.995,
                                   -0.001,
                                   -0.004999,
                                   0.00005,
                                   -0.00005,
                                   1e-320,
                                   -1e-320,
                                   1e20,
                                   -1.7976931348623157e308,
                                   std::numeric_limits<double>::min(),
                                   83.0,
                                   156.0,
                                   58.0 + 932.0 * 4095.0 / 4096.0};

TEST_F(TextBufferFixed, AwkwardValuesMatchPrintf) {
    for (const int decimals : {0, 1, 2, 4, 6, 17}) {
        for (const double value : kAwkward) {
            text_buffer_free(buffer);
            text_buffer_init(buffer);
            ASSERT_TRUE(text_append_fixed(buffer, value, decimals));
            EXPECT_EQ(content(), printf_fixed(value, decimals)) << value << " / " << decimals;
        }
    }
}

TEST_F(TextBufferFixed, RandomValuesMatchPrintf) {
    SignalRng rng = signal_rng(77);
    std::string expected;
    for (int n = 0; n < 1000000; ++n) {
        const int decimals = n % 2 == 0 ? 2 : 4;
        const double scale = std::ldexp(1.0, static_cast<int>(signal_next_int(rng, -30, 30)));
        const double value = signal_next_uniform(rng, -1.0, 1.0) * scale;
        ASSERT_TRUE(text_append_fixed(buffer, value, decimals));
        ASSERT_TRUE(text_append_char(buffer, ';'));
        expected += printf_fixed(value, decimals) + ";";
    }
    EXPECT_EQ(content(), expected);
}

TEST_F(TextBufferFixed, PointsMatchTheirPrintfForm) {
    SignalRng rng = signal_rng(78);
    std::string expected;
    for (int n = 0; n < 100000; ++n) {
        const double x = signal_next_uniform(rng, 50.0, 1000.0);
        const double y = signal_next_uniform(rng, -5.0, 330.0);
        const char* lead = n % 3 == 0 ? "M" : n % 3 == 1 ? "L" : "";
        ASSERT_TRUE(text_append_point(buffer, lead, x, y, 2));
        std::vector<char> text(64);
        std::snprintf(text.data(), text.size(), "%s%.2f,%.2f ", lead, x, y);
        expected += text.data();
    }
    EXPECT_EQ(content(), expected);
}

} // namespace
