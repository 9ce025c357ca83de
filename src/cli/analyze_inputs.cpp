#include "cli/analyze_inputs.h"

#include "cli/comparison_error.h"
#include "cli/defaults_lookup.h"
#include "cli/input_checks.h"

#include <cstdio>

namespace {

void copy_if_shown(const SettingsFile& defaults, SettingId id, std::string& out) {
    const std::optional<SettingValue>& text = file_setting(defaults, id);
    if (text && !text->text.empty()) out = text->text;
}

} // namespace

bool load_analyze_settings(const AnalyzeOptions& options, AnalyzeSettingsFiles& files) {
    if (options.config_path && !load_override_file(options.config_path, files.config_file)) {
        std::fprintf(stderr, "error: failed to read or parse --config '%s'\n", options.config_path);
        return false;
    }
    std::string message;
    if (!load_run_defaults(options.defaults_path, files.defaults, message) ||
        !apply_default_profile(files.config_file, "--config", message) ||
        !apply_default_profile(files.defaults, "sonalyx-defaults.cfg", message)) {
        std::fputs(message.c_str(), stderr);
        return false;
    }
    return true;
}

TesterInfo tester_info_from(const SettingsFile& defaults) {
    TesterInfo tester;
    const std::optional<SettingValue>& enabled =
        file_setting(defaults, SettingId::tester_info_enabled);
    if (!enabled || !enabled->boolean) return tester;
    copy_if_shown(defaults, SettingId::tester_test_engineer, tester.engineer);
    copy_if_shown(defaults, SettingId::tester_test_product, tester.product);
    copy_if_shown(defaults, SettingId::tester_test_company_name, tester.company);
    return tester;
}

bool read_analyze_inputs(const AnalyzeOptions& options, RunContext& context, WavPair& wavs) {
    // The DUT is read even when the reference failed, so that both problems are told at once.
    const bool ref_read = read_input(options.ref_path, "--ref", wavs.ref, context.error_text);
    const bool dut_read = read_input(options.dut_path, "--dut", wavs.dut, context.error_text);
    return ref_read && dut_read;
}

bool check_input_formats(const WavPair& wavs, RunContext& context) {
    const bool ref_rate = rate_supported(wavs.ref, "--ref", context.error_text);
    const bool dut_rate = rate_supported(wavs.dut, "--dut", context.error_text);
    const bool ref_channels = channels_supported(wavs.ref, "--ref", context.error_text);
    if (!channels_supported(wavs.dut, "--dut", context.error_text)) return false;
    if (!ref_rate || !dut_rate || !ref_channels) return false;
    if (wavs.ref.channels != wavs.dut.channels) {
        report_comparison_error(context.error_text,
                                "--ref has %u channel(s) but --dut has %u -- ref and DUT must have "
                                "identical channel count",
                                wavs.ref.channels, wavs.dut.channels);
        return false;
    }
    if (wavs.ref.sample_rate != wavs.dut.sample_rate) {
        report_comparison_error(context.error_text,
                                "--ref is %u Hz but --dut is %u Hz -- ref and DUT must share the "
                                "same sample rate (sonalyx does no resampling of its own)",
                                wavs.ref.sample_rate, wavs.dut.sample_rate);
        return false;
    }
    return true;
}
