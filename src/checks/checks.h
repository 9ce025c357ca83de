// Sample-domain checks: comparisons of the aligned reference and DUT samples themselves, each
// taking the decoded files, the file offset and plain parameters and returning its own result
// record with a verdict: bit-exactness and bit accuracy, level fidelity, the whole-file time
// domain scan and the impulse template check.
#pragma once

#include "checks/bit_compare.h"
#include "checks/impulse_template.h"
#include "checks/level_fidelity.h"
#include "checks/time_domain.h"
