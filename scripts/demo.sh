#!/usr/bin/env bash
# Builds sonalyx (Release, without the tests), generates an example reference/DUT pair and runs a
# real analysis on it. The HTML report and the results JSON land in build/demo/example/; nothing
# is opened, the last lines say where they are.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
cd "$root"
# shellcheck source=ensure-packages.sh
source scripts/ensure-packages.sh
ensure_packages cmake g++ python3
scripts/build.sh build/demo -DCMAKE_BUILD_TYPE=Release -DSONALYX_TESTS=OFF -DSONALYX_BENCH=OFF
exe=build/demo/src/sonalyx
example=build/demo/example
mkdir -p "$example"
python3 scripts/make_example_pair.py "$example"
"$exe" --version
"$exe" analyze --ref "$example/reference.wav" --dut "$example/dut.wav" --out "$example/" --json
echo "open $root/$example/reference.html in a browser to read the report"
