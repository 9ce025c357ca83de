// The failure markers of the Signal Overview card: one per check that failed at a located worst
// point, placed at that point's reference frame as a fraction of the reference length.
#pragma once

#include "report/charts/envelope_chart.h"
#include "results/results.h"

#include <cstddef>
#include <vector>

// In the order Bit-Exact, Bit Accuracy, Time Domain, Impulse, Level Fidelity, Artifact, Spectral,
// Distortion. A per-channel check is located by its first failing examined channel.
std::vector<ChartMarker> overview_failure_markers(const RunResults& results,
                                                  std::size_t ref_frames);
