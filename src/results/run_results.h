// Everything one analyze run measured, as plain numbers: the file facts, the alignment, the
// length mismatch, one block per check, the overall verdict and the resolved settings. The results
// JSON and the report pages are written from this record alone and compute nothing of their own.
#pragma once

#include "align/align.h"
#include "checks/checks.h"
#include "config/config.h"
#include "dsp/dsp.h"
#include "results/page_figures.h"
#include "results/spectral_outcome.h"
#include "results/version.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

struct FileFacts {
    std::string path;
    std::uint32_t sample_rate = 0;
    std::uint32_t channels = 0;
    std::uint32_t bit_depth = 0; // 16, 24, 32 or 64
    bool is_float = false;       // "float" or "integer" sample format
    std::size_t frames = 0;
};

struct LengthMismatch {
    bool failed = false;
    double uncovered_pct = 0.0;
    std::int64_t uncovered_samples = 0;
    std::size_t shared_frames = 0; // reference frames the DUT covers after alignment
};

// The checks that can fail the overall verdict, in the order they are visited.
enum class GatingCheck : std::size_t {
    length_mismatch,
    bitexact,
    levelfidelity,
    artifact,
    spectral,
    distortion,
    loudness,
    time_domain,
    impulse_template,
    count,
};

inline constexpr std::size_t kGatingCheckCount = static_cast<std::size_t>(GatingCheck::count);

struct OverallVerdict {
    bool passed = true;
    std::size_t gating_failure_count = 0;
    std::string machine_list;  // "levelfidelity,spectral"; at most 191 characters
    std::string readable_list; // "Level Fidelity, Spectral Fidelity"; at most 319 characters
    std::array<bool, kGatingCheckCount> failed{}; // indexed by GatingCheck
};

// Tester information shown in the reports (only when enabled and non-empty).
struct TesterInfo {
    std::string engineer;
    std::string product;
    std::string company;
};

// One check's outcome: whether it ran, and its measurements and verdict when it did.
template <typename Result> struct CheckBlock {
    bool ran = false;
    Result result{};
};

struct RunResults {
    FileFacts ref;
    FileFacts dut;
    std::uint32_t sample_rate = 0;
    AlignmentResult alignment;
    LengthMismatch length_mismatch;
    CheckBlock<BitCompareResult> bit_exact;
    CheckBlock<BitCompareResult> bit_accuracy;
    CheckBlock<LevelFidelityResult> level_fidelity;
    CheckBlock<ArtifactResult> artifact;
    CheckBlock<SpectralOutcome> spectral;
    CheckBlock<DistortionResult> distortion;
    CheckBlock<LoudnessResult> loudness;
    CheckBlock<TimeDomainResult> time_domain;
    CheckBlock<ImpulseTemplateResult> impulse_template;
    OverallVerdict overall;
    AnalysisConfig config;
    std::vector<ConfigurationRow> configuration; // the configuration card's rows
    TesterInfo tester;
    PageFigures figures; // what the report draws, taken once the checks have run
};

// "PASS" or "FAIL".
inline const char* verdict_text(bool passed) {
    return passed ? "PASS" : "FAIL";
}
