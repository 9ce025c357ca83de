#!/usr/bin/env bash
# Builds the Release tree and runs every benchmark program, each printing its own table.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
cd "$root"
# shellcheck source=ensure-packages.sh
source scripts/ensure-packages.sh
ensure_packages cmake g++ libgtest-dev
scripts/build.sh build/release -DCMAKE_BUILD_TYPE=Release -DSONALYX_BENCH=ON
for program in build/release/bench/*_bench; do
    echo "== $(basename "$program")"
    "$program"
done
