#!/usr/bin/env bash
# Configures and builds one tree: scripts/build.sh <build-dir> [extra cmake arguments...]
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
dir="$1"
shift
cmake -S "$root" -B "$dir" "$@" >/dev/null
cmake --build "$dir" -j "$(nproc)"
