// Artifact detection written as plainly as possible: per channel the differences DUT - reference,
// the whole-file spread from two full sorts, for every sample its neighbourhood gathered and
// sorted twice (support/neighbourhood_reference.h), then the flagged samples cut into runs that
// are judged one by one. The tests compare the fast check against it field by field, and the
// benchmark uses it as the baseline. It shares no code with the check it verifies.
#pragma once

#include "audio/wav_file.h"

#include <cstddef>
#include <cstdint>

struct ReferenceArtifactSettings {
    double k = 6.0;
    double noise_floor_db = -80.0;
    std::size_t window_samples = 64;
    std::size_t min_run = 1;
    double min_severity = 4.0;
    double min_global_severity = 100.0;
    std::size_t min_silence_clip_run = 8;
};

// The fields of the check's channel result, with the same meanings.
struct ReferenceArtifactChannel {
    bool passed = false;
    std::uint64_t samples_checked = 0;
    std::uint64_t samples_excluded = 0;
    std::uint64_t samples_flagged = 0;
    std::uint64_t event_count = 0;
    std::uint64_t counted_event_count = 0;
    std::uint64_t minor_event_count = 0;
    std::uint64_t first_event_start_frame = 0;
    std::uint64_t first_event_length = 0;
    std::uint64_t worst_event_start_frame = 0;
    std::uint64_t worst_event_length = 0;
    bool worst_event_counted = false;
    double worst_event_global_severity = 0.0;
    double worst_event_severity = 0.0;
    double worst_event_deviation_ratio = 0.0;
};

struct ReferenceArtifactResult {
    ReferenceArtifactChannel channel[2];
    std::uint32_t channels = 0;
    bool passed = false;
};

// Reference frame n pairs with DUT frame n + offset; the first min(reference channels, 2)
// channels are examined.
ReferenceArtifactResult reference_artifact_check(const WavFile& ref, const WavFile& dut,
                                                 std::int64_t offset,
                                                 const ReferenceArtifactSettings& settings);
