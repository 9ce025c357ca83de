#!/usr/bin/env bash
# Runs every fuzz harness of a fuzz build tree for the given number of seconds, each starting from
# a copy of its seed corpus under tests/fuzz/corpus/<name>, so the seeds in the repository stay as
# they are. A crash, a leak or a hang makes the script fail.
#   scripts/fuzz.sh <fuzz-build-dir> <seconds>
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
dir="$1"
seconds="$2"
for harness in "$dir"/tests/fuzz/fuzz_*; do
    [ -x "$harness" ] || continue
    name="$(basename "$harness")"
    name="${name#fuzz_}"
    work="$dir/fuzz-work/$name"
    rm -rf "$work"
    mkdir -p "$work/corpus" "$work/artifacts"
    cp -r "$root/tests/fuzz/corpus/$name/." "$work/corpus/"
    echo "fuzzing $name for ${seconds}s"
    "$harness" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -print_final_stats=1 \
        -artifact_prefix="$work/artifacts/" "$work/corpus" 2>"$work/log" || {
        tail -n 60 "$work/log"
        echo "fuzz harness $name failed; reproducer in $work/artifacts"
        exit 1
    }
    grep -E '^stat::number_of_executed_units' "$work/log" || true
done
