#!/usr/bin/env bash
# The whole test suite: formatting, lint of the pages' scripts and style sheets, static analysis,
# a Release tree and an AddressSanitizer+UndefinedBehaviorSanitizer tree with every test run on
# both, the browser tests of the pages the Release build writes, and each fuzz harness for 15
# seconds from its seed corpus. Installs what is missing first.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
cd "$root"
# shellcheck source=ensure-packages.sh
source scripts/ensure-packages.sh
ensure_packages cmake g++ libgtest-dev clang libclang-rt-14-dev clang-format cppcheck libxml2-utils \
    parallel

# Each phase's heading says how far into the run it starts, so a slow phase is easy to find.
phase() { echo "== $1 (at ${SECONDS}s)"; }

phase "formatting"
find src tests bench \( -name '*.cpp' -o -name '*.h' \) -print0 |
    xargs -0 clang-format --dry-run --Werror

phase "script lint"
# ESLint on the pages' scripts and Stylelint on their style sheets (src/report/assets).
ensure_node_packages
npm run --silent lint

phase "static analysis"
cppcheck --quiet --error-exitcode=1 --enable=warning,performance --std=c++20 --inline-suppr \
    -I src src

phase "release build and tests"
# The benchmark programs are left to scripts/bench.sh, which builds them in the same tree.
scripts/build.sh build/release -DCMAKE_BUILD_TYPE=Release -DSONALYX_BENCH=OFF
ctest --test-dir build/release --output-on-failure -j "$(nproc)"

phase "browser tests"
scripts/browser-test.sh build/release/src/sonalyx build/release/browser-test

phase "sanitizer build and tests"
# -O1 with line tables only: sanitizer reports keep file and line, and the tree compiles faster.
scripts/build.sh build/sanitize -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG="-O1 -g1" \
    -DSONALYX_SANITIZE=ON -DSONALYX_BENCH=OFF
ctest --test-dir build/sanitize --output-on-failure -j "$(nproc)"

phase "fuzzing"
BUILD_TARGET=fuzz_harnesses scripts/build.sh build/fuzz -DCMAKE_CXX_COMPILER=clang++ -DSONALYX_FUZZ=ON -DSONALYX_TESTS=OFF \
    -DSONALYX_BENCH=OFF
scripts/fuzz.sh build/fuzz 15

echo "all tests passed (${SECONDS}s)"
