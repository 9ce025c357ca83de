#include "results/results_json.h"
#include "results/results_blocks.h"

#include <array>
#include <utility>

namespace {

// The blocks in key order.
constexpr std::array<ResultsBlockWriter, 12> kResultsBlocks = {
    write_header_block,   write_alignment_block,    write_length_mismatch_block,
    write_bitexact_block, write_bit_accuracy_block, write_level_fidelity_block,
    write_artifact_block, write_spectral_block,     write_distortion_block,
    write_loudness_block, write_time_domain_block,  write_impulse_template_block,
};

// "{\n", every block in key order, "}\n" with the last entry's comma removed.
bool write_results_object(const RunResults& results, FlatJson& object) {
    if (!json_open(object)) return false;
    for (const ResultsBlockWriter write_block : kResultsBlocks) {
        if (!write_block(object, results)) return false;
    }
    return json_close(object);
}

} // namespace

bool build_results_json(const RunResults& results, std::string& json, std::string* refused_key) {
    json.clear();
    FlatJson object;
    const bool built =
        json_guard_memory([&results, &object] { return write_results_object(results, object); });
    if (built) json = std::move(object.text);
    if (refused_key != nullptr) *refused_key = std::move(object.refused_key);
    return built;
}
