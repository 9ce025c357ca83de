// A correlation that cannot get its memory says so instead of passing for "lag 0, correlation 0":
// cross_correlate, align_channels and diagnose_alignment each report it with the size of the
// request that failed. The runs are held to a small address space in a child process, which the
// sanitizer build cannot run under (it reserves far more for its own bookkeeping).
#include "align/alignment.h"
#include "align/alignment_diagnosis.h"
#include "align/correlation_plan.h"
#include "alignment_signals.h"
#include "support/signal_gen.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sys/resource.h>

namespace {

#ifdef __SANITIZE_ADDRESS__
constexpr bool kAddressSpaceLimitWorks = false;
#else
constexpr bool kAddressSpaceLimitWorks = true;
#endif

constexpr std::size_t kFrames = 1000000;
// Room for the small searches of the default window, not for one over the whole file.
constexpr unsigned long kHeadroom = 40ul << 20;

// Holds the process to the address space it uses now plus kHeadroom; false when it cannot.
bool limit_address_space() {
    std::FILE* status = std::fopen("/proc/self/status", "r");
    if (status == nullptr) return false;
    char line[256];
    unsigned long kib = 0;
    while (std::fgets(line, sizeof line, status) != nullptr) {
        if (std::strncmp(line, "VmSize:", 7) == 0) kib = std::strtoul(line + 7, nullptr, 10);
    }
    std::fclose(status);
    const rlimit limit{kib * 1024 + kHeadroom, kib * 1024 + kHeadroom};
    return kib > 0 && setrlimit(RLIMIT_AS, &limit) == 0;
}

// The bytes one search over the window of max_lag on two inputs of kFrames asks for at once.
std::uint64_t search_bytes(std::size_t max_lag) {
    const LagWindow window = lag_window(kFrames, kFrames, max_lag);
    const BlockPlan plan = plan_blocks(kFrames, kFrames, window);
    return (lag_window_width(window) + 4 * plan.points) * sizeof(double);
}

TEST(AlignmentOutOfMemory, CrossCorrelateReportsTheFailedRequest) {
    if (!kAddressSpaceLimitWorks) GTEST_SKIP() << "no address-space limit under the sanitizers";
    const std::vector<double> a = signal_uniform(1, kFrames, -1.0, 1.0);
    const std::vector<double> b = signal_uniform(2, kFrames, -1.0, 1.0);
    ASSERT_GT(search_bytes(kFrames), kHeadroom);
    EXPECT_EXIT(
        {
            if (!limit_address_space()) std::exit(2);
            const CorrelationPeak wide = cross_correlate(a, b, kFrames, false);
            const CorrelationPeak narrow = cross_correlate(a, b, 4800, false);
            const bool ok = wide.out_of_memory && wide.failed_bytes == search_bytes(kFrames) &&
                            wide.lag == 0 && wide.corr == 0.0 && !narrow.out_of_memory &&
                            narrow.failed_bytes == 0;
            std::exit(ok ? 0 : 1);
        },
        ::testing::ExitedWithCode(0), "");
}

TEST(AlignmentOutOfMemory, AlignChannelsStopsAndReportsIt) {
    if (!kAddressSpaceLimitWorks) GTEST_SKIP() << "no address-space limit under the sanitizers";
    const WavFile ref = make_wav({signal_uniform(3, kFrames, -1.0, 1.0)});
    const WavFile dut = make_wav({signal_uniform(4, kFrames, -1.0, 1.0)});
    EXPECT_EXIT(
        {
            if (!limit_address_space()) std::exit(2);
            const AlignmentResult r = align_channels(ref, dut, kFrames, 2, 0.9, -70.0);
            const bool ok = r.out_of_memory && r.failed_bytes == search_bytes(kFrames) &&
                            !r.aligned && r.channel[0].state == AlignmentState::measured &&
                            !r.channel[0].ok && r.channel[0].offset == 0 &&
                            r.channel[0].confidence == 0.0;
            std::exit(ok ? 0 : 1);
        },
        ::testing::ExitedWithCode(0), "");
}

TEST(AlignmentOutOfMemory, DiagnosisStopsAtTheWideSearchAndReportsIt) {
    if (!kAddressSpaceLimitWorks) GTEST_SKIP() << "no address-space limit under the sanitizers";
    const WavFile ref = make_wav({signal_uniform(5, kFrames, -1.0, 1.0)});
    const WavFile dut = make_wav({signal_uniform(6, kFrames, -1.0, 1.0)});
    EXPECT_EXIT(
        {
            if (!limit_address_space()) std::exit(2);
            const AlignmentResult r = align_channels(ref, dut, 4800, 2, 0.9, -70.0);
            if (r.out_of_memory || r.aligned) std::exit(3);
            const AlignmentDiagnosis d = diagnose_alignment(ref, dut, r, 4800, 0.9)[0];
            const bool ok = d.examined && d.out_of_memory &&
                            d.failed_bytes == search_bytes(kFrames / 2) &&
                            d.cause == AlignmentCause::no_match && d.stretch_len == 48000;
            std::exit(ok ? 0 : 1);
        },
        ::testing::ExitedWithCode(0), "");
}

TEST(AlignmentOutOfMemory, NothingIsReportedWhenMemorySuffices) {
    const DelayedPair pair = delayed_pair(Material::noise, 7, 48000, 30);
    const AlignmentResult r =
        align_channels(make_wav({pair.ref}), make_wav({pair.dut}), 4800, 2, 0.9, -70.0);
    EXPECT_FALSE(r.out_of_memory);
    EXPECT_EQ(r.failed_bytes, 0u);
    EXPECT_TRUE(r.aligned);
    const AlignmentResult unrelated = align_channels(
        make_wav({pair.ref}), make_wav({signal_uniform(8, 48000, -1.0, 1.0)}), 4800, 2, 0.9, -70.0);
    const AlignmentDiagnosis d =
        diagnose_alignment(make_wav({pair.ref}), make_wav({signal_uniform(8, 48000, -1.0, 1.0)}),
                           unrelated, 4800, 0.9)[0];
    EXPECT_TRUE(d.examined);
    EXPECT_FALSE(d.out_of_memory);
    EXPECT_EQ(d.failed_bytes, 0u);
}

} // namespace
