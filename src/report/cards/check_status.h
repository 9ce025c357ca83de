// How the KPI grid, the navigation tabs and the cards show each check's status (decided by the
// results' gating rule), plus the single figure a tile shows for a result that holds two
// channels.
#pragma once

#include "report/cards/card_frame.h"
#include "results/results.h"

#include <cstddef>

// A check's badge from its status: passed, failed, failed without gating, or not run.
Badge status_badge(const CheckStatus& status);

// A single-frame or continuous spectral result is in error when its overlap was too short for
// one frame (nothing was compared on any channel).
bool spectral_scan_in_error(const SpectralScanResult& scan);
// The largest p99 ratio over the examined channels: the channel that decides the verdict.
double spectral_scan_p99(const SpectralScanResult& scan);
