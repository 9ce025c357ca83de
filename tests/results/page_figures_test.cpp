// The figures the pages draw: each one equals the reduction or spectrum taken directly at its
// view, the detail windows, the distortion channel shown, and the plot page's figures.
#include "results/page_figures.h"
#include "results/run_results.h"

#include "support/memory_wav.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

std::vector<double> wave(std::size_t frames, double step, double gain) {
    std::vector<double> out(frames);
    for (std::size_t i = 0; i < frames; ++i)
        out[i] = gain * std::sin(step * static_cast<double>(i));
    return out;
}

void expect_same(const Envelope& a, const Envelope& b) {
    EXPECT_EQ(a.min, b.min);
    EXPECT_EQ(a.max, b.max);
    EXPECT_EQ(a.valid, b.valid);
}

struct FigureCase {
    WavFile ref = memory_wav({wave(20000, 0.01, 0.5), wave(20000, 0.03, 0.25)}, 48000);
    WavFile dut = memory_wav({wave(20005, 0.01, 0.4), wave(20005, 0.02, 0.3)}, 48000);
    RunResults results;

    FigureCase() {
        results.alignment.file_offset = 5;
        results.config.spectral_fidelity.fft_size.value = 1024;
    }
};

} // namespace

TEST(DetailWindow, AtLeastTwiceTheMinimumHalfWidthAroundTheWorstSample) {
    const DetailWindow middle = detail_window(100000, 50000);
    EXPECT_EQ(middle.first_frame, 50000 - 2048);
    EXPECT_EQ(middle.frame_count, 4096u);
    const DetailWindow long_file = detail_window(48000000, 24000000);
    EXPECT_EQ(long_file.first_frame, 24000000 - 240000);
    EXPECT_EQ(long_file.frame_count, 480000u);
}

TEST(DetailWindow, ShiftedInsideTheFileAndCutToShortFiles) {
    EXPECT_EQ(detail_window(100000, 10).first_frame, 0);
    const DetailWindow end = detail_window(100000, 99999);
    EXPECT_EQ(end.first_frame, 100000 - 4096);
    EXPECT_EQ(end.frame_count, 4096u);
    const DetailWindow short_file = detail_window(1000, 700);
    EXPECT_EQ(short_file.first_frame, 0);
    EXPECT_EQ(short_file.frame_count, 1000u);
}

TEST(PageFigures, FullViewsAreBothFilesReducedAtTheAlignedPosition) {
    FigureCase run;
    PageFigures figures;
    build_page_figures(run.results, run.ref, run.dut, figures);
    for (unsigned c = 0; c < 2; ++c) {
        EXPECT_EQ(figures.full[c].first_frame, 0);
        EXPECT_EQ(figures.full[c].frame_count, 20000u);
        expect_same(figures.full[c].ref,
                    reduce_envelope(run.ref, c, 0, 20000, 0, EnvelopeScale::linear));
        expect_same(figures.full[c].dut,
                    reduce_envelope(run.dut, c, 0, 20000, 5, EnvelopeScale::linear));
    }
    EXPECT_TRUE(figures.time_domain_zoom[0].ref.min.empty()) << "the scan did not run";
    EXPECT_TRUE(figures.distortion.ref_db.empty()) << "distortion did not run";
}

TEST(PageFigures, DetailViewsSitAroundEachChecksWorstSample) {
    FigureCase run;
    run.results.time_domain.ran = true;
    run.results.time_domain.result.channel[1].has_failures = true;
    run.results.time_domain.result.channel[1].worst_sample = 15000;
    run.results.impulse_template.ran = true;
    run.results.impulse_template.result.channel[1].has_failures = true;
    run.results.impulse_template.result.channel[1].worst_sample = 9000;
    PageFigures figures;
    build_page_figures(run.results, run.ref, run.dut, figures);
    const DetailWindow td = detail_window(20000, 15000);
    EXPECT_EQ(figures.time_domain_zoom[1].first_frame, td.first_frame);
    expect_same(
        figures.time_domain_zoom[1].dut,
        reduce_envelope(run.dut, 1, td.first_frame, td.frame_count, 5, EnvelopeScale::linear));
    const DetailWindow it = detail_window(20000, 9000);
    EXPECT_EQ(figures.impulse_zoom[1].first_frame, it.first_frame);
    expect_same(
        figures.impulse_zoom[1].ref,
        reduce_envelope(run.ref, 1, it.first_frame, it.frame_count, 0, EnvelopeScale::linear));
    // Channel 0 passed both: both detail views open the file and are the same view.
    EXPECT_EQ(figures.impulse_zoom[0].first_frame, 0);
    expect_same(figures.impulse_zoom[0].ref, figures.time_domain_zoom[0].ref);
}

TEST(PageFigures, SpectraAreTakenAtEachRecordsChartFrame) {
    FigureCase run;
    run.results.spectral.ran = true;
    run.results.spectral.result.scan.channel[0].chart_frame_start = 3000;
    run.results.spectral.result.scan.channel[1].chart_frame_start = 0;
    run.results.alignment.file_offset = -2;
    PageFigures figures;
    build_page_figures(run.results, run.ref, run.dut, figures);
    EXPECT_EQ(figures.spectral_scan[0].ref_db, display_spectrum_db(run.ref, 0, 3000, 1024));
    EXPECT_EQ(figures.spectral_scan[0].dut_db, display_spectrum_db(run.dut, 0, 2998, 1024));
    EXPECT_EQ(figures.spectral_scan[1].ref_db.size(), 512u);
    EXPECT_TRUE(figures.spectral_scan[1].dut_db.empty()) << "the DUT frame would start before 0";
}

TEST(PageFigures, SnapshotsGetOneSpectrumEach) {
    FigureCase run;
    run.results.spectral.ran = true;
    run.results.spectral.result.snapshot_mode = true;
    run.results.spectral.result.snapshots.snapshots.resize(3);
    run.results.spectral.result.snapshots.snapshots[2].channel[1].chart_frame_start = 7000;
    PageFigures figures;
    build_page_figures(run.results, run.ref, run.dut, figures);
    ASSERT_EQ(figures.spectral_snapshots[1].size(), 3u);
    EXPECT_EQ(figures.spectral_snapshots[1][2].dut_db, display_spectrum_db(run.dut, 1, 7005, 1024));
    EXPECT_TRUE(figures.spectral_scan[0].ref_db.empty());
}

TEST(PageFigures, DistortionShowsTheMeasuredChannelWithTheHighestThdn) {
    FigureCase run;
    DistortionResult& d = run.results.distortion.result;
    run.results.distortion.ran = true;
    d.channels = 2;
    d.channel[0].frames_scanned = 4;
    d.channel[0].thdn_ratio = 0.01;
    d.channel[1].frames_scanned = 4;
    d.channel[1].thdn_ratio = 0.02;
    d.channel[1].worst_frame_start = 4096;
    EXPECT_EQ(distortion_shown_channel(d), 1u);
    PageFigures figures;
    build_page_figures(run.results, run.ref, run.dut, figures);
    EXPECT_EQ(figures.distortion.ref_db, display_spectrum_db(run.ref, 1, 4096, 1024));
    d.channel[1].frame_gated = true;
    EXPECT_EQ(distortion_shown_channel(d), 0u);
    d.channel[0].insufficient_samples = true;
    build_page_figures(run.results, run.ref, run.dut, figures);
    EXPECT_TRUE(figures.distortion.ref_db.empty()) << "no channel has a measurement";
}

TEST(PlotFigures, CentredSpectrumAndBothScalesPerShownChannel) {
    const WavFile file = memory_wav({wave(5000, 0.05, 0.5)}, 48000);
    PlotFigures figures;
    build_plot_figures(file, 1024, figures);
    EXPECT_EQ(figures.spectrum_db[0], display_spectrum_db(file, 0, (5000 - 1024) / 2, 1024));
    expect_same(figures.energy[0], reduce_envelope(file, 0, 0, 5000, 0, EnvelopeScale::db));
    expect_same(figures.waveform[0], reduce_envelope(file, 0, 0, 5000, 0, EnvelopeScale::linear));
    EXPECT_TRUE(figures.waveform[1].min.empty()) << "a mono file shows one channel";
    build_plot_figures(file, 8192, figures);
    EXPECT_TRUE(figures.spectrum_db[0].empty()) << "the file is shorter than the frame";
}
