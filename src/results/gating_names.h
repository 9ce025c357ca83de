// The names of the checks that can fail the overall verdict: the machine names of the
// gating_failures list and the readable names of the console summary and the batch outputs.
#pragma once

#include "results/run_results.h"

#include <optional>
#include <string_view>

// "length_mismatch", "bitexact", ... as in the gating_failures list.
const char* gating_machine_name(GatingCheck check);
// "Length Mismatch", "Bit-Exactness", ... as in the console summary.
const char* gating_readable_name(GatingCheck check);
// The check with machine name `name`, if there is one.
std::optional<GatingCheck> gating_check_named(std::string_view name);
