#include "cli/batch_options.h"

#include <charconv>
#include <cstring>
#include <string_view>

namespace {

constexpr std::size_t kMaxJobs = 256;

// The analyze options that take a value, which is passed on with them.
constexpr const char* kAnalyzeValueOptions[] = {"--config", "--defaults-cfg", "--snapshots"};

bool named(const char* arg, const char* name) {
    return std::strcmp(arg, name) == 0;
}

bool is_analyze_value_option(const char* arg) {
    for (const char* name : kAnalyzeValueOptions)
        if (named(arg, name)) return true;
    return false;
}

// A value option claims the argument after it when one exists.
bool take_value(std::span<char* const> args, std::size_t& i, const char* name, const char*& out) {
    if (!named(args[i], name) || i + 1 >= args.size()) return false;
    out = args[++i];
    return true;
}

bool take_flag(const char* arg, BatchOptions& out) {
    const std::pair<const char*, bool BatchOptions::*> flags[] = {
        {"--json", &BatchOptions::json},
        {"--exit-code", &BatchOptions::exit_code},
        {"--resume", &BatchOptions::resume},
        {"--quiet", &BatchOptions::quiet},
    };
    for (const auto& [name, field] : flags) {
        if (!named(arg, name)) continue;
        out.*field = true;
        return true;
    }
    return false;
}

std::optional<std::size_t> job_count(std::string_view text) {
    std::size_t value = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (text.empty() || error != std::errc() || stop != end || value == 0 || value > kMaxJobs)
        return std::nullopt;
    return value;
}

ScanResult refused(std::string message) {
    return {ScanStatus::refused, std::move(message)};
}

// --jobs and --shard, whose values are read at once.
std::optional<ScanResult> take_counted(std::span<char* const> args, std::size_t& i,
                                       BatchOptions& out) {
    const char* text = nullptr;
    if (take_value(args, i, "--jobs", text)) {
        const auto jobs = job_count(text);
        if (!jobs)
            return refused(std::string("error: --jobs needs a whole number from 1 to 256, got '") +
                           text + "'\n");
        out.jobs = *jobs;
        return ScanResult{};
    }
    if (take_value(args, i, "--shard", text)) {
        out.shard = parse_shard(text);
        if (!out.shard)
            return refused(std::string("error: --shard needs K/N with 0 <= K < N, got '") + text +
                           "'\n");
        return ScanResult{};
    }
    return std::nullopt;
}

// The analyze options are checked by analyze's own scanner, as a pair's run will see them. The
// paths it keeps point into the batch options (the settings files) or at fixed placeholder text.
ScanResult check_analyze_args(BatchOptions& out) {
    static constexpr const char* kPairWords[] = {"sonalyx", "analyze", "--ref", "pair",
                                                 "--dut",   "pair",    "--out", "pair"};
    std::vector<char*> argv;
    for (const char* word : kPairWords)
        argv.push_back(const_cast<char*>(word));
    for (std::string& arg : out.analyze_args)
        argv.push_back(arg.data());
    return scan_analyze_options(argv, out.analyze);
}

ScanResult check_combination(const BatchOptions& out) {
    const char* missing = "error: batch requires --manifest and --out, or --merge\n";
    if (out.merge_dir) {
        if (out.out_dir || out.shard || out.resume)
            return refused("error: --merge takes no --out, --shard or --resume\n");
        return {};
    }
    if (!out.manifest_path || !out.out_dir) return {ScanStatus::usage_error, missing};
    return {};
}

} // namespace

ScanResult scan_batch_options(std::span<char* const> args, BatchOptions& out) {
    for (std::size_t i = 2; i < args.size(); ++i) {
        if (take_value(args, i, "--manifest", out.manifest_path) ||
            take_value(args, i, "--out", out.out_dir) ||
            take_value(args, i, "--merge", out.merge_dir) || take_flag(args[i], out))
            continue;
        if (auto counted = take_counted(args, i, out)) {
            if (counted->status != ScanStatus::ok) return *counted;
            continue;
        }
        if (named(args[i], "--help") || named(args[i], "-h")) return {ScanStatus::help, {}};
        // Each pair has its own inputs, and the batch writes one JUnit file for all of them.
        if (named(args[i], "--ref") || named(args[i], "--dut") || named(args[i], "--junit"))
            return {ScanStatus::usage_error,
                    std::string("error: unrecognized argument '") + args[i] + "'\n"};
        out.analyze_args.emplace_back(args[i]);
        if (is_analyze_value_option(args[i]) && i + 1 < args.size())
            out.analyze_args.emplace_back(args[++i]);
    }
    const ScanResult analyze = check_analyze_args(out);
    if (analyze.status != ScanStatus::ok) return analyze;
    return check_combination(out);
}
