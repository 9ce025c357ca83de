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

} // namespace

bool build_results_json(const RunResults& results, std::string& json) {
    json.clear();
    FlatJson object;
    if (!json_open(object, kResultsJsonCapacity)) return false;
    for (const ResultsBlockWriter write_block : kResultsBlocks) {
        if (!write_block(object, results)) return false;
    }
    if (!json_close(object)) return false;
    json = std::move(object.text);
    return true;
}
