// Running the sample-domain checks of an analyze run in their fixed order, each only when enabled,
// with its parameters taken from the resolved settings.
#pragma once

#include "audio/wav_file.h"
#include "results/run_results.h"

// Bit-exactness, bit accuracy, time domain, impulse template, then level fidelity (always); each
// fills its block of `results` under the alignment's file offset.
void run_sample_checks(const WavFile& ref, const WavFile& dut, RunResults& results);
