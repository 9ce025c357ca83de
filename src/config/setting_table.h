// The one table of settings: for every section and key, how it is read from the settings files,
// its built-in default, the rule that validates it, which check reads it, and how the
// configuration card shows it. Reading, resolution, validation and the card rows all walk it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "config/analysis_config.h"
#include "config/setting_id.h"
#include "config/setting_slot.h"

// Where a file holds the key: an analysis section (top level of --config, inside `analysis` in
// the defaults file), or the defaults file's top-level `general` (tester) or `alignment` section.
enum class SettingScope { analysis, tester, alignment };

enum class SettingType {
    number,
    integer,
    positive_integer, // integers below 1 are ignored like malformed ones
    boolean,
    text,
    bands,
    snapshots,
};

enum class DefaultRule {
    none,              // unset until a file or the command line gives it
    fixed,             // `builtin`
    rate_scaled,       // `builtin` as stated for 48000 Hz, scaled above it (source 5)
    fft_size,          // from the sample rate and the shared frame count
    level_profile,     // `builtin`, or `impulse_builtin` under level_fidelity.profile "impulse"
    general_threshold, // general.low_level_signal_threshold_db as resolved
};

// The first failing rule sets `message` to its complete error line.
using SettingRule = bool (*)(const AnalysisConfig&, std::uint32_t sample_rate,
                             std::string& message);

enum class CardShown { always, when_set, when_not_empty };

enum class CardFormat {
    text,           // the text, escaped
    count,          // "%zu"
    decibels,       // "%.2f dB"
    band_count,     // "%zu configured"
    enabled_switch, // "enabled" / "disabled"
    yes_no_switch,  // "yes" / "no"
    edge_skip,      // "%ld samples at each end"
    fraction,       // "%.2f"
    snapshot_count, // "%zu"
    run_ms,         // "disabled" for exactly 0, else "%.1f ms"
    samples,        // "%zu samples"
    times,          // "%.4g&times;"
};

struct SettingEntry {
    SettingId id = SettingId::count;
    SettingScope scope = SettingScope::analysis;
    const char* section = "";
    const char* key = "";
    SettingType type = SettingType::number;
    std::size_t capacity = 0; // text keys: bytes including the terminator
    DefaultRule default_rule = DefaultRule::fixed;
    double builtin = 0.0; // numbers, integers, booleans (0 or 1)
    double impulse_builtin = 0.0;
    const char* builtin_text = "";
    const SettingSlot* slot = nullptr; // analysis keys only
    SettingRule rule = nullptr;        // validation, in table order
    // The configuration card's row when `card_order` is above 0; rows appear in ascending order.
    int card_order = 0;
    CardShown card_shown = CardShown::always;
    const char* card_check = "";
    const char* card_parameter = "";
    CardFormat card_format = CardFormat::text;
    const char* read_by = ""; // the part of the program that uses the value
};

// Every setting, in SettingId order.
std::span<const SettingEntry> setting_table();

const SettingEntry& setting_entry(SettingId id);
