// The Configuration card: the rows always shown, the rows shown only when set, and the sources.
#include "report/cards/cards.h"

#include "page_text.h"
#include "report_case.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string card_of(const ReportCase& run) {
    return render_text(
        [&](TextBuffer& page) { return append_configuration_card(page, run.inputs()); });
}

} // namespace

TEST(ConfigurationCard, BuiltInDefaults) {
    ReportCase run(1, 64);
    EXPECT_EQ(card_of(run),
              "<section class=\"card\" id=\"configuration\">\n<div class=\"card-head\">\n<div "
              "class=\"htext\"><h3>Configuration</h3><span class=\"sub\">resolved parameters this "
              "run used, and where each came from</span></div>\n</div>\n<div "
              "class=\"card-body\">\n<div class=\"overflow-x\"><table class=\"dt\"><tr><th>Check"
              "</th><th>Parameter</th><th>Value</th><th>Source</th></tr>\n"
              "<tr><td>Spectral Fidelity</td><td>Profile</td><td>freq_domain_multitone</td><td>"
              "built-in default</td></tr>\n"
              "<tr><td>Spectral Fidelity</td><td>FFT Size</td><td>8192</td><td>built-in "
              "default</td></tr>\n"
              "<tr><td>Spectral Fidelity</td><td>Peak Tolerance</td><td>1.00 dB</td><td>built-in "
              "default</td></tr>\n"
              "<tr><td>Spectral Fidelity</td><td>Continuous Scan</td><td>disabled</td><td>"
              "built-in default</td></tr>\n"
              "<tr><td>Level Fidelity</td><td>Profile</td><td>general</td><td>built-in "
              "default</td></tr>\n"
              "<tr><td>Level Fidelity</td><td>P99 Tolerance</td><td>1.02 dB</td><td>built-in "
              "default</td></tr>\n"
              "<tr><td>Level Fidelity</td><td>Min Sustained Run</td><td>20.0 ms</td><td>built-in "
              "default</td></tr>\n"
              "<tr><td>Artifact Detection</td><td>Neighborhood Window</td><td>64 samples</td><td>"
              "built-in default</td></tr>\n"
              "<tr><td>Artifact Detection</td><td>Minimum Severity</td><td>4&times;</td><td>"
              "built-in default</td></tr>\n"
              "<tr><td>Artifact Detection</td><td>Min Silence/Clip Run</td><td>8 samples</td><td>"
              "built-in default</td></tr>\n"
              "<tr><td>Artifact Detection</td><td>Minimum Whole-File Severity</td><td>100&times;"
              "</td><td>built-in default</td></tr>\n"
              "<tr><td>Bit-Exactness</td><td>Gating</td><td>disabled</td><td>built-in "
              "default</td></tr>\n"
              "<tr><td>Bit Accuracy</td><td>Enabled</td><td>no</td><td>built-in default</td>"
              "</tr>\n</table></div>\n</div>\n</section>\n");
}

TEST(ConfigurationCard, OptionalRowsAndSources) {
    ReportCase run(1, 64);
    AnalysisConfig& c = run.results.config;
    SpectralFidelityConfig& s = c.spectral_fidelity;
    s.profile = {true, "amp_<sweep>", SettingSource::command_line};
    s.relative_noise_floor_db = {true, -45.5, SettingSource::config_file};
    s.bands = {true, std::vector<SpectralBandSetting>(3), SettingSource::defaults_file};
    s.continuous = {true, true, SettingSource::sweep_profile};
    s.sweep_edge_skip_samples = {true, 8192, SettingSource::config_file};
    s.overlap_fraction = {true, 0.25, SettingSource::config_file};
    s.snapshots = {true, {false, 5, {}}, SettingSource::command_line};
    s.fft_size.source = SettingSource::rate_default;
    c.level_fidelity.min_sustained_run_ms = {true, 0.0, SettingSource::defaults_file};
    c.artifact.min_severity.value = 4.56789;
    c.bit_exact.gates_overall = {true, true, SettingSource::command_line};
    c.bit_accuracy.enabled = {true, true, SettingSource::config_file};
    run.results.configuration = configuration_rows(c);
    const std::string text = card_of(run);
    const char* rows[] = {
        "<tr><td>Spectral Fidelity</td><td>Profile</td><td>amp_&lt;sweep&gt;</td><td>command "
        "line</td></tr>\n",
        "<tr><td>Spectral Fidelity</td><td>FFT Size</td><td>8192</td><td>built-in default for "
        "this sample rate</td></tr>\n",
        "<tr><td>Spectral Fidelity</td><td>Relative Noise Floor</td><td>-45.50 dB</td><td>"
        "--config</td></tr>\n",
        "<tr><td>Spectral Fidelity</td><td>Bands</td><td>3 configured</td><td>"
        "sonalyx-defaults.cfg</td></tr>\n",
        "<tr><td>Spectral Fidelity</td><td>Continuous Scan</td><td>enabled</td><td>implied by "
        "sweep profile</td></tr>\n",
        "<tr><td>Spectral Fidelity</td><td>Sweep Edge Skip</td><td>8192 samples at each "
        "end</td><td>--config</td></tr>\n",
        "<tr><td>Spectral Fidelity</td><td>Overlap Fraction</td><td>0.25</td><td>--config</td>"
        "</tr>\n",
        "<tr><td>Spectral Fidelity</td><td>Snapshots</td><td>5</td><td>command line</td></tr>\n",
        "<tr><td>Level Fidelity</td><td>Min Sustained Run</td><td>disabled</td><td>"
        "sonalyx-defaults.cfg</td></tr>\n",
        "<tr><td>Artifact Detection</td><td>Minimum Severity</td><td>4.568&times;</td>",
        "<tr><td>Bit-Exactness</td><td>Gating</td><td>enabled</td><td>command line</td></tr>\n",
        "<tr><td>Bit Accuracy</td><td>Enabled</td><td>yes</td><td>--config</td></tr>\n",
    };
    std::size_t at = 0;
    for (const char* row : rows) {
        const std::size_t found = text.find(row, at);
        ASSERT_NE(found, std::string::npos) << row;
        at = found;
    }
}
