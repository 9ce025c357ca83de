// Option records of the three subcommands and the scanners that fill them from the argument
// vector. Scanners print nothing: they return what was found and, on a usage error or a refused
// combination, the complete message line for the dispatcher to print.
#pragma once

#include "config/config.h"

#include <optional>
#include <span>
#include <string>

// Paths are borrowed from the argument vector; null means "not given". A later occurrence of an
// option overrides an earlier one.
struct AnalyzeOptions {
    const char* ref_path = nullptr;
    const char* dut_path = nullptr;
    const char* out_path = nullptr;
    const char* config_path = nullptr;
    const char* defaults_path = nullptr;
    const char* junit_path = nullptr;
    bool json = false;
    bool quiet = false;
    bool exit_code = false;
    // The flags that force analysis settings, and --snapshots, as the settings resolution takes
    // them.
    CommandLineSettings settings;
};

struct TrimOptions {
    const char* input_path = nullptr;
    const char* out_path = nullptr;
    const char* report_path = nullptr;
    const char* defaults_path = nullptr;
};

struct PlotOptions {
    const char* input_path = nullptr;
    const char* out_path = nullptr;
    const char* defaults_path = nullptr;
    bool json = false;
};

enum class ScanStatus {
    ok,          // options complete, run the subcommand
    help,        // --help or -h: usage to standard output, exit 0
    usage_error, // message, a blank line and the usage text to standard error, exit 1
    refused,     // message alone to standard error, exit 1
};

struct ScanResult {
    ScanStatus status = ScanStatus::ok;
    std::string message; // complete line(s), ending in a newline; empty unless an error
};

// `args` is the whole argument vector: args[0] the program, args[1] the subcommand.
ScanResult scan_analyze_options(std::span<char* const> args, AnalyzeOptions& out);
ScanResult scan_trim_options(std::span<char* const> args, TrimOptions& out);
ScanResult scan_plot_options(std::span<char* const> args, PlotOptions& out);
