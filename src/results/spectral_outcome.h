// The spectral comparison's outcome in whichever form the driver ran it: a set of snapshots, or
// one centred frame / a continuous scan per channel.
#pragma once

#include "dsp/dsp.h"

struct SpectralOutcome {
    bool snapshot_mode = false;
    SpectralScanResult scan;           // filled unless snapshot_mode
    SpectralSnapshotsResult snapshots; // filled in snapshot_mode
};

inline bool spectral_passed(const SpectralOutcome& outcome) {
    return outcome.snapshot_mode ? outcome.snapshots.passed : outcome.scan.passed;
}
