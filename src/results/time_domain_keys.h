// The Time Domain block of the results JSON.
#pragma once

#include "checks/checks.h"
#include "results/json_entries.h"

// time_domain_verdict, then for channel 0 and, when the reference is stereo, channel 1: the
// sample counts and the failures per tier, followed by the worst-sample keys only for a channel
// that has failures. Every entry ends with a comma; false at the first entry that fails.
bool write_time_domain_keys(FlatJson& json, const TimeDomainResult& r);
