// How the KPI grid, the navigation tabs and the cards read each check's record: whether it ran,
// whether it gates the overall verdict (from the resolved gating switches) and whether it passed,
// plus the single figure a tile shows for a result that holds two channels.
#pragma once

#include "report/card_frame.h"
#include "results/run_results.h"

#include <cstddef>

// A check that did not run counts as passed.
struct CheckStatus {
    bool ran = false;
    bool gates = false;
    bool passed = true;
};

// Ran and failed.
bool check_failed(const CheckStatus& status);
// Failed without gating the overall verdict.
bool check_failed_nongating(const CheckStatus& status);
Badge status_badge(const CheckStatus& status);

CheckStatus bit_exact_status(const RunResults& results);
CheckStatus bit_accuracy_status(const RunResults& results); // never gates
CheckStatus level_status(const RunResults& results);
CheckStatus artifact_status(const RunResults& results);
CheckStatus spectral_status(const RunResults& results);   // always gates
CheckStatus distortion_status(const RunResults& results); // always gates
CheckStatus loudness_status(const RunResults& results);
CheckStatus time_domain_status(const RunResults& results);      // always gates
CheckStatus impulse_template_status(const RunResults& results); // always gates

// A single-frame or continuous spectral result is in error when its overlap was too short for
// one frame (nothing was compared on any channel).
bool spectral_scan_in_error(const SpectralScanResult& scan);
// The largest p99 ratio over the examined channels: the channel that decides the verdict.
double spectral_scan_p99(const SpectralScanResult& scan);

// The distortion channel a single set of tiles shows: among the channels with a measurement the
// one with the largest worst-frame THD+N (the first on ties), which is the failing one whenever a
// channel failed; channel 0 when none was measured.
std::size_t distortion_shown_channel(const DistortionResult& result);
// False when the channel's overlap was too short or every frame was gated.
bool distortion_has_measurement(const DistortionChannelResult& channel);
