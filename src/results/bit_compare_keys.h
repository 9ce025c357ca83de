// The results JSON keys of bit-exactness (bitexact_*) and of bit accuracy (bit_accuracy_*), both
// written from one BitCompareResult. Every entry carries a trailing comma; each writer returns
// false at the first entry that fails.
#pragma once

#include "checks/checks.h"
#include "results/json_entries.h"

// Verdict, samples compared and differing, worst error in dB; on FAIL also the first and the
// worst difference (frame, channel, reference and DUT value).
bool write_bitexact_keys(FlatJson& json, const BitCompareResult& result);

// Verdict and the tolerance used; on FAIL also the worst difference.
bool write_bit_accuracy_keys(FlatJson& json, const BitCompareResult& result, double tolerance_db);
