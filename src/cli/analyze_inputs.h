// The first stages of an analyze run: its settings files, and the two WAV files read and checked
// to be comparable.
#pragma once

#include "audio/audio.h"
#include "cli/options.h"
#include "cli/run_context.h"
#include "config/config.h"

struct AnalyzeSettingsFiles {
    SettingsFile config_file; // --config
    SettingsFile defaults;
};

struct WavPair {
    WavFile ref;
    WavFile dut;
};

// Loads --config and the defaults file and applies their default profiles; prints the error line
// and returns false on failure.
bool load_analyze_settings(const AnalyzeOptions& options, AnalyzeSettingsFiles& files);

// The tester block the reports show: only when enabled, each text only when non-empty.
TesterInfo tester_info_from(const SettingsFile& defaults);

// Reads --ref and --dut; each failure is a comparison error. False when either failed.
bool read_analyze_inputs(const AnalyzeOptions& options, RunContext& context, WavPair& wavs);

// Sample rates, channel counts and their agreement; each failure is a comparison error.
bool check_input_formats(const WavPair& wavs, RunContext& context);
