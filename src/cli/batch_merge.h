// `sonalyx batch --merge DIR/`: the batch outputs (index page, JUnit file, summary JSON) built from
// the shard files that machines running `batch --shard K/N` left in DIR. The rows come back in
// manifest order: shard K holds pairs K, K + N, K + 2N, ... in that order. A missing shard is
// named on one warning line each; the outputs are still written from the shards present, and the
// merge then exits 1, so that an incomplete batch never passes unnoticed.
#pragma once

#include "cli/batch_options.h"

int run_batch_merge(const BatchOptions& options);
