// How the KPI grid, the navigation tabs and the cards show each check's status (decided by the
// results' gating rule), plus the single figure a tile shows for a result that holds two
// channels.
#pragma once

#include "report/card_frame.h"
#include "results/check_gating.h"
#include "results/run_results.h"

#include <cstddef>

// A check's badge from its status: passed, failed, failed without gating, or not run.
Badge status_badge(const CheckStatus& status);

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
