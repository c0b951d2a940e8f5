#!/usr/bin/env bash
# Runs the fuzz driver for a bounded time on a seed corpus made from a valid file.
#   run_fuzz.sh FUZZER FAULT_DAMAGE WORK_DIR SECONDS
# The corpus grows in WORK_DIR/corpus; inputs that fail are kept in WORK_DIR/findings.
set -euo pipefail
fuzzer=$1 seeder=$2 work=$3 seconds=$4
mkdir -p "$work/corpus" "$work/findings"
"$seeder" --write-seed "$work/corpus" >/dev/null
# -timeout: a walk of one input taking longer is a hang; -rss_limit_mb: a runaway allocation.
exec "$fuzzer" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=3072 -print_final_stats=1 \
  -artifact_prefix="$work/findings/" "$work/corpus"
