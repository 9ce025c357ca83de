#!/usr/bin/env bash
# Configures and builds one tree:
#   scripts/build.sh <build-dir> [extra cmake arguments...]
# With BUILD_TARGET set, only that target (and what it needs) is built.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
dir="$1"
shift
cmake -S "$root" -B "$dir" "$@" >/dev/null
cmake --build "$dir" -j "$(nproc)" ${BUILD_TARGET:+--target "$BUILD_TARGET"}
