#include "cli/options.h"

#include <cstdlib>
#include <cstring>

namespace {

bool is_help(const char* arg) {
    return std::strcmp(arg, "--help") == 0 || std::strcmp(arg, "-h") == 0;
}

ScanResult usage_error(std::string message) {
    return {ScanStatus::usage_error, std::move(message)};
}

// An argument that no option claimed: a help request, or an unrecognized argument.
ScanResult unclaimed(const char* arg) {
    if (is_help(arg)) return {ScanStatus::help, {}};
    return usage_error(std::string("error: unrecognized argument '") + arg + "'\n");
}

// A value option claims the argument after it, but only when one exists; standing last it is
// left unclaimed and reported as unrecognized.
bool take_value(std::span<char* const> args, std::size_t& i, const char* name, const char*& out) {
    if (std::strcmp(args[i], name) != 0 || i + 1 >= args.size()) return false;
    out = args[++i];
    return true;
}

// A flag sets either a field of the option record itself or one of the settings it forces.
struct AnalyzeFlag {
    const char* name;
    bool AnalyzeOptions::*own;
    bool CommandLineSettings::*forced;
};

constexpr AnalyzeFlag kAnalyzeFlags[] = {
    {"--json", &AnalyzeOptions::json, nullptr},
    {"--deepscan", nullptr, &CommandLineSettings::deepscan},
    {"--impulse", nullptr, &CommandLineSettings::impulse},
    {"--ampsweep", nullptr, &CommandLineSettings::ampsweep},
    {"--freqsweep", nullptr, &CommandLineSettings::freqsweep},
    {"--bitaccuracy", nullptr, &CommandLineSettings::bitaccuracy},
    {"--bitexact", nullptr, &CommandLineSettings::bitexact},
    {"--no-bitexact", nullptr, &CommandLineSettings::no_bitexact},
    {"--no-distortion", nullptr, &CommandLineSettings::no_distortion},
    {"--levelfidelity-ref-only", nullptr, &CommandLineSettings::levelfidelity_ref_only},
    {"--no-loudness", nullptr, &CommandLineSettings::no_loudness},
    {"--loudness", nullptr, &CommandLineSettings::loudness},
    {"--artifact-ref-only", nullptr, &CommandLineSettings::artifact_ref_only},
    {"--quiet", &AnalyzeOptions::quiet, nullptr},
    {"--exit-code", &AnalyzeOptions::exit_code, nullptr},
};

bool take_analyze_flag(const char* arg, AnalyzeOptions& out) {
    for (const AnalyzeFlag& flag : kAnalyzeFlags) {
        if (std::strcmp(arg, flag.name) == 0) {
            (flag.own ? out.*flag.own : out.settings.*flag.forced) = true;
            return true;
        }
    }
    return false;
}

bool take_analyze_value(std::span<char* const> args, std::size_t& i, AnalyzeOptions& out) {
    const char* snapshots = nullptr;
    if (take_value(args, i, "--snapshots", snapshots)) {
        // Any text is accepted here, read as a base-10 signed integer; the range is checked later.
        out.settings.snapshots = std::strtol(snapshots, nullptr, 10);
        return true;
    }
    return take_value(args, i, "--ref", out.ref_path) ||
           take_value(args, i, "--dut", out.dut_path) ||
           take_value(args, i, "--out", out.out_path) ||
           take_value(args, i, "--config", out.config_path) ||
           take_value(args, i, "--junit", out.junit_path) ||
           take_value(args, i, "--defaults-cfg", out.defaults_path);
}

// The three pairs of options that contradict each other, refused in this order.
ScanResult check_analyze_exclusions(const CommandLineSettings& o) {
    if (o.ampsweep && o.freqsweep)
        return {ScanStatus::refused,
                "error: --ampsweep and --freqsweep cannot both be set -- spectral_fidelity.profile "
                "is a single choice, not an independent toggle\n"};
    if (o.bitexact && o.no_bitexact)
        return {ScanStatus::refused,
                "error: --bitexact and --no-bitexact cannot both be set -- one asks for strict "
                "gating, the other asks to skip the check entirely\n"};
    if (o.loudness && o.no_loudness)
        return {ScanStatus::refused,
                "error: --loudness and --no-loudness cannot both be set -- one asks for strict "
                "gating, the other asks to skip the check entirely\n"};
    return {};
}

} // namespace

ScanResult scan_analyze_options(std::span<char* const> args, AnalyzeOptions& out) {
    const char* missing = "error: analyze requires --ref, --dut, and --out\n";
    if (args.size() <= 2) return usage_error(missing);
    for (std::size_t i = 2; i < args.size(); ++i) {
        if (take_analyze_value(args, i, out) || take_analyze_flag(args[i], out)) continue;
        return unclaimed(args[i]);
    }
    if (!out.ref_path || !out.dut_path || !out.out_path) return usage_error(missing);
    return check_analyze_exclusions(out.settings);
}

ScanResult scan_trim_options(std::span<char* const> args, TrimOptions& out) {
    const char* missing = "error: trim requires --input and --out\n";
    if (args.size() <= 2) return usage_error(missing);
    // Trim has no flags, so its arguments are read in pairs: the index always advances by two,
    // and an odd argument left at the end is unrecognized.
    for (std::size_t i = 2; i < args.size(); i += 2) {
        std::size_t value = i;
        if (take_value(args, value, "--input", out.input_path) ||
            take_value(args, value, "--out", out.out_path) ||
            take_value(args, value, "--report", out.report_path) ||
            take_value(args, value, "--defaults-cfg", out.defaults_path))
            continue;
        return unclaimed(args[i]);
    }
    if (!out.input_path || !out.out_path) return usage_error(missing);
    return {};
}

ScanResult scan_plot_options(std::span<char* const> args, PlotOptions& out) {
    const char* missing = "error: plot requires --input and --out\n";
    if (args.size() <= 2) return usage_error(missing);
    for (std::size_t i = 2; i < args.size(); ++i) {
        if (take_value(args, i, "--input", out.input_path) ||
            take_value(args, i, "--out", out.out_path) ||
            take_value(args, i, "--defaults-cfg", out.defaults_path))
            continue;
        if (std::strcmp(args[i], "--json") == 0) {
            out.json = true;
            continue;
        }
        return unclaimed(args[i]);
    }
    if (!out.input_path || !out.out_path) return usage_error(missing);
    return {};
}
