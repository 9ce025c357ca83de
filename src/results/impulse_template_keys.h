// The impulse template block of the results JSON: the verdict, then per channel the failure
// count and, when the channel failed, where and by how much the DUT rose furthest above the
// template.
#pragma once

#include "checks/checks.h"
#include "results/json_entries.h"

// Writes every key of the block with a trailing comma; false at the first entry that fails.
// Channel 1 gets keys only for a stereo reference.
bool write_impulse_template_keys(FlatJson& json, const ImpulseTemplateResult& r);
