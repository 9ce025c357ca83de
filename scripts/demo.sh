#!/usr/bin/env bash
# Builds sonalyx (Release, without the tests) and runs it: the version banner and the usage text.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
cd "$root"
# shellcheck source=ensure-packages.sh
source scripts/ensure-packages.sh
ensure_packages cmake g++
scripts/build.sh build/demo -DCMAKE_BUILD_TYPE=Release -DSONALYX_TESTS=OFF -DSONALYX_BENCH=OFF
exe=build/demo/sonalyx
"$exe" --version
"$exe" --help
echo "built $exe"
