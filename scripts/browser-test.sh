#!/usr/bin/env bash
# Browser tests of the pages sonalyx writes, in Debian's headless Chromium:
#   scripts/browser-test.sh <sonalyx-exe> <out-dir>
# The batch index page is written by the test program batch_index_writer of the same build tree
# (<build>/tests/, beside <build>/src/ that holds the executable).
# Installs Debian's chromium, and nodejs/npm where no node or npm command exists (the machine's
# Node.js may bring its own npm), and the npm packages of package-lock.json when they are not
# installed as locked; then runs tests/browser/run.mjs, which writes its WAV
# fixtures, the pages and light and dark screenshots into <out-dir> and ends with an
# "N passed, N failed" line. Exits non-zero when any test failed.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
if [ "$#" -ne 2 ]; then
    echo "usage: scripts/browser-test.sh <sonalyx-exe> <out-dir>" >&2
    exit 1
fi
exe="$(realpath "$1")"
out="$(realpath -m "$2")"
cd "$root"
# shellcheck source=ensure-packages.sh
source scripts/ensure-packages.sh
ensure_node_packages chromium
node tests/browser/run.mjs "$exe" "$out" "$(dirname "$exe")/../tests/batch_index_writer"
