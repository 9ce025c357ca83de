// The four subcommands. Each takes the whole argument vector (args[1] is its own name) and
// returns the process exit status.
#pragma once

#include "cli/options.h"

#include <optional>
#include <span>

int run_analyze_command(std::span<char* const> args);
int run_trim_command(std::span<char* const> args);
int run_plot_command(std::span<char* const> args);
int run_batch_command(std::span<char* const> args);

// Prints what an option scan found wrong (or the usage text for a help request) and returns the
// exit status to stop with; returns nothing when the subcommand should go on.
std::optional<int> finish_scan(const ScanResult& scan);
