#include "results/results_blocks.h"

namespace {

const char* sample_format_name(const FileFacts& file) {
    return file.is_float ? "float" : "integer";
}

bool write_overall(FlatJson& json, const OverallVerdict& overall) {
    return json_int(json, "sonalyx_phase", 2) && json_text(json, "status", "analyzed") &&
           json_text(json, "overall_verdict", verdict_text(overall.passed)) &&
           json_int(json, "gating_failure_count", static_cast<int>(overall.gating_failure_count)) &&
           json_text(json, "gating_failures", overall.machine_list);
}

bool write_file_facts(FlatJson& json, const RunResults& results) {
    const FileFacts& ref = results.ref;
    const FileFacts& dut = results.dut;
    return json_text(json, "ref_file", ref.path) && json_text(json, "dut_file", dut.path) &&
           json_int(json, "sample_rate", static_cast<int>(results.sample_rate)) &&
           json_int(json, "ref_channels", static_cast<int>(ref.channels)) &&
           json_int(json, "dut_channels", static_cast<int>(dut.channels)) &&
           json_int(json, "ref_bit_depth", static_cast<int>(ref.bit_depth)) &&
           json_int(json, "dut_bit_depth", static_cast<int>(dut.bit_depth)) &&
           json_text(json, "ref_sample_format", sample_format_name(ref)) &&
           json_text(json, "dut_sample_format", sample_format_name(dut)) &&
           json_long(json, "ref_frame_count", static_cast<long>(ref.frames)) &&
           json_long(json, "dut_frame_count", static_cast<long>(dut.frames));
}

bool write_channel_alignment(FlatJson& json, std::size_t channel, const ChannelAlignment& align) {
    const auto key = [channel](const char* suffix) {
        return channel_key("align", channel, suffix);
    };
    return json_real(json, key("confidence").c_str(), align.confidence) &&
           json_long(json, key("offset").c_str(), static_cast<long>(align.offset)) &&
           json_text(json, key("state").c_str(), alignment_state_name(align.state)) &&
           json_int(json, key("ref_silent").c_str(), align.ref_silent ? 1 : 0) &&
           json_int(json, key("dut_silent").c_str(), align.dut_silent ? 1 : 0);
}

} // namespace

bool write_header_block(FlatJson& json, const RunResults& results) {
    return write_overall(json, results.overall) && write_file_facts(json, results);
}

bool write_alignment_block(FlatJson& json, const RunResults& results) {
    const AlignmentResult& alignment = results.alignment;
    if (!json_long(json, "align_file_offset", static_cast<long>(alignment.file_offset)) ||
        !json_long(json, "align_disagreement_samples", static_cast<long>(alignment.disagreement)))
        return false;
    for (std::size_t channel = 0; channel < json_channel_count(results); ++channel) {
        if (!write_channel_alignment(json, channel, alignment.channel[channel])) return false;
    }
    return true;
}

bool write_length_mismatch_block(FlatJson& json, const RunResults& results) {
    const LengthMismatch& mismatch = results.length_mismatch;
    return json_text(json, "length_mismatch_verdict", verdict_text(!mismatch.failed)) &&
           json_real(json, "length_mismatch_ref_uncovered_pct", mismatch.uncovered_pct) &&
           json_long(json, "length_mismatch_ref_uncovered_samples",
                     static_cast<long>(mismatch.uncovered_samples));
}

std::size_t json_channel_count(const RunResults& results) {
    return results.ref.channels >= 2 ? 2 : 1;
}

std::string channel_key(const char* check, std::size_t channel, const char* suffix) {
    return std::string(check) + "_channel_" + std::to_string(channel) + "_" + suffix;
}
