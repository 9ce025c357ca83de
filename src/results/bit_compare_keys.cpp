#include "results/bit_compare_keys.h"

#include "results/run_results.h"

#include <cstdint>
#include <string>

namespace {

// "<prefix>_diff_frame", "<prefix>_diff_channel", "<prefix>_diff_ref_value" and
// "<prefix>_diff_dut_value" for one difference, e.g. prefix "bitexact_first".
bool write_difference(FlatJson& json, const std::string& prefix, std::uint64_t frame,
                      std::uint32_t channel, double ref_value, double dut_value) {
    return json_long(json, (prefix + "_diff_frame").c_str(), static_cast<long>(frame)) &&
           json_int(json, (prefix + "_diff_channel").c_str(), static_cast<int>(channel)) &&
           json_real(json, (prefix + "_diff_ref_value").c_str(), ref_value) &&
           json_real(json, (prefix + "_diff_dut_value").c_str(), dut_value);
}

bool write_worst_difference(FlatJson& json, const char* check, const BitCompareResult& result) {
    return write_difference(json, std::string(check) + "_worst", result.worst_diff_frame,
                            result.worst_diff_channel, result.worst_diff_ref_value,
                            result.worst_diff_dut_value);
}

} // namespace

bool write_bitexact_keys(FlatJson& json, const BitCompareResult& result) {
    if (!json_text(json, "bitexact_verdict", verdict_text(result.passed)) ||
        !json_long(json, "bitexact_samples_compared", static_cast<long>(result.samples_compared)) ||
        !json_long(json, "bitexact_samples_differing",
                   static_cast<long>(result.samples_differing)) ||
        !json_real(json, "bitexact_max_error_db", result.max_error_db))
        return false;
    if (result.passed) return true;
    return write_difference(json, "bitexact_first", result.first_diff_frame,
                            result.first_diff_channel, result.first_diff_ref_value,
                            result.first_diff_dut_value) &&
           write_worst_difference(json, "bitexact", result);
}

bool write_bit_accuracy_keys(FlatJson& json, const BitCompareResult& result, double tolerance_db) {
    if (!json_text(json, "bit_accuracy_verdict", verdict_text(result.passed)) ||
        !json_real(json, "bit_accuracy_tolerance_db", tolerance_db))
        return false;
    // A FAIL always writes the worst difference, zeroed when nothing was compared or none differs.
    return result.passed || write_worst_difference(json, "bit_accuracy", result);
}
