#!/usr/bin/env bash
# run_target.sh PROGRAM SEEDS OPTIONS...: one fuzz program over a scratch copy of its seeds. A finding is
# kept beside the program, as PROGRAM-crash-..., PROGRAM-timeout-... and so on. Programs themselves end over
# an input that takes 2 s of processor time; the limit here is for one that never ends.
set -euo pipefail
program=$1 seeds=$2
shift 2
target=$(basename "$program")
target=${target#fuzz_}
# Each input becomes a file, which in memory takes half the time.
[ -w /dev/shm ] && export TMPDIR=/dev/shm
corpus=$(mktemp -d)
trap 'rm -rf "$corpus"' EXIT
export ASAN_OPTIONS="quarantine_size_mb=16:allocator_may_return_null=1:${ASAN_OPTIONS:-}"
"$program" "$corpus" "$seeds/$target" -dict="$seeds/k32jpg.dict" -artifact_prefix="$program-" \
  -timeout=60 -rss_limit_mb=512 -max_len=65536 -verbosity=0 -print_final_stats=1 "$@"
