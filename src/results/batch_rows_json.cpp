// The batch rows JSON (the summary and the shard files): one flat object, like the results JSON,
// with the counts and total time first and then each pair's keys under "pair_K_"; a figure that
// is unset has no key.
#include "results/batch_row.h"
#include "results/flat_json_reader.h"
#include "results/json_entries.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace {

std::string pair_key(std::size_t index, const char* name) {
    return "pair_" + std::to_string(index) + "_" + name;
}

std::size_t count_verdict(std::span<const BatchRow> rows, std::string_view verdict) {
    std::size_t count = 0;
    for (const BatchRow& row : rows)
        count += row.verdict == verdict ? 1 : 0;
    return count;
}

template <typename Value, typename Write>
bool write_optional(FlatJson& json, const std::string& key, const std::optional<Value>& value,
                    Write write) {
    return !value || write(json, key.c_str(), *value, EntryEnd::comma);
}

bool write_row(FlatJson& json, std::size_t i, const BatchRow& row) {
    return json_text(json, pair_key(i, "id").c_str(), row.id) &&
           json_text(json, pair_key(i, "ref_file").c_str(), row.ref_path) &&
           json_text(json, pair_key(i, "dut_file").c_str(), row.dut_path) &&
           json_text(json, pair_key(i, "verdict").c_str(), row.verdict) &&
           json_text(json, pair_key(i, "failing_checks").c_str(), row.failing_checks) &&
           json_text(json, pair_key(i, "error").c_str(), row.error) &&
           write_optional(json, pair_key(i, "offset"), row.offset, json_long) &&
           write_optional(json, pair_key(i, "level_p99_db"), row.level_p99_db, json_real) &&
           write_optional(json, pair_key(i, "loudness_delta_lu"), row.loudness_delta_lu,
                          json_real) &&
           write_optional(json, pair_key(i, "thdn_db"), row.thdn_db, json_real) &&
           write_optional(json, pair_key(i, "artifact_count"), row.artifact_count, json_long) &&
           json_real(json, pair_key(i, "seconds").c_str(), row.seconds) &&
           json_text(json, pair_key(i, "report").c_str(), row.report);
}

bool write_header(FlatJson& json, std::span<const BatchRow> rows, double total_seconds) {
    return json_int(json, "sonalyx_phase", 2) && json_text(json, "status", "batch") &&
           json_long(json, "pair_count", static_cast<long>(rows.size())) &&
           json_long(json, "pass_count", static_cast<long>(count_verdict(rows, "PASS"))) &&
           json_long(json, "fail_count", static_cast<long>(count_verdict(rows, "FAIL"))) &&
           json_long(json, "error_count", static_cast<long>(count_verdict(rows, "ERROR"))) &&
           json_real(json, "total_seconds", total_seconds);
}

bool read_text(const FlatObject& json, const std::string& key, std::string& value) {
    std::optional<std::string> text = flat_text(json, key);
    if (text) value = std::move(*text);
    return text.has_value();
}

bool read_row(const FlatObject& json, std::size_t i, BatchRow& row) {
    row.offset = flat_integer(json, pair_key(i, "offset"));
    row.level_p99_db = flat_real(json, pair_key(i, "level_p99_db"));
    row.loudness_delta_lu = flat_real(json, pair_key(i, "loudness_delta_lu"));
    row.thdn_db = flat_real(json, pair_key(i, "thdn_db"));
    row.artifact_count = flat_integer(json, pair_key(i, "artifact_count"));
    const std::optional<double> seconds = flat_real(json, pair_key(i, "seconds"));
    row.seconds = seconds.value_or(0.0);
    return seconds && read_text(json, pair_key(i, "id"), row.id) &&
           read_text(json, pair_key(i, "ref_file"), row.ref_path) &&
           read_text(json, pair_key(i, "dut_file"), row.dut_path) &&
           read_text(json, pair_key(i, "verdict"), row.verdict) &&
           read_text(json, pair_key(i, "failing_checks"), row.failing_checks) &&
           read_text(json, pair_key(i, "error"), row.error) &&
           read_text(json, pair_key(i, "report"), row.report);
}

bool read_rows(const FlatObject& json, std::vector<BatchRow>& rows, std::string& error) {
    const std::optional<std::int64_t> count = flat_integer(json, "pair_count");
    // Every pair has several keys, so a count above the number of keys cannot be complete.
    if (flat_text(json, "status") != "batch" || !count || *count < 0 ||
        static_cast<std::uint64_t>(*count) > json.size()) {
        error = "not a batch summary: no status \"batch\" with a pair_count";
        return false;
    }
    rows.assign(static_cast<std::size_t>(*count), BatchRow{});
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (read_row(json, i, rows[i])) continue;
        error = "pair " + std::to_string(i) + " is incomplete";
        return false;
    }
    return true;
}

} // namespace

bool write_batch_rows_json(std::span<const BatchRow> rows, double total_seconds, std::string& out) {
    out.clear();
    FlatJson json;
    const bool built = json_guard_memory([&] {
        if (!json_open(json) || !write_header(json, rows, total_seconds)) return false;
        for (std::size_t i = 0; i < rows.size(); ++i) {
            if (!write_row(json, i, rows[i])) return false;
        }
        return json_close(json);
    });
    if (built) out = std::move(json.text);
    return built;
}

bool read_batch_rows_json(std::string_view text, std::vector<BatchRow>& rows, std::string& error) {
    rows.clear();
    const bool read = json_guard_memory([&] {
        FlatObject json;
        return read_flat_json(text, json, error) && read_rows(json, rows, error);
    });
    if (!read) rows.clear();
    if (!read && error.empty()) error = "out of memory";
    return read;
}
