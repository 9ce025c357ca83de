// Running the checks of an analyze run in their fixed order, each only when enabled, with its
// parameters taken from the resolved settings.
#pragma once

#include "audio/wav_file.h"
#include "results/run_results.h"

// Bit-exactness, bit accuracy, time domain, impulse template, level fidelity (always), spectral
// fidelity (always), then distortion; each fills its block of `results` under the alignment's file
// offset. The artifact and loudness checks take their places in this order as they arrive.
void run_analysis_checks(const WavFile& ref, const WavFile& dut, RunResults& results);
