#!/usr/bin/env bash
# Times gds on a generated stream of a million boundaries and prints the
# throughput and the peak memory of each run.
#   bench/run.sh path/to/gds [boundaries]
set -euo pipefail
gds=$(realpath "$1")
count=${2:-1000000}
here=$(cd "$(dirname "$0")" && pwd)
build=$(dirname "$(dirname "$(dirname "$(dirname "$gds")")")")
gen="$build/bench/gdsgen"
work="$build/bench"
stream="$work/bench_$count.gds"
[ -f "$stream" ] || "$gen" "$stream" "$count"
bytes=$(stat -c %s "$stream")

run() {
  local label=$1; shift
  local out
  out=$( { /usr/bin/time -f '%e %M' "$gds" "$@" > /dev/null; } 2>&1 | tail -n 1 )
  local secs=${out% *} kib=${out#* }
  awk -v l="$label" -v s="$secs" -v k="$kib" -v b="$bytes" \
    'BEGIN { printf "%-34s %6.2f s  %7.1f MB/s  %7.1f MiB peak\n", l, s, (s > 0 ? b / 1e6 / s : 0), k / 1024 }'
}

echo "stream: $stream ($((bytes / 1000000)) MB, $count boundaries)"
cd "$work"
run "read, build, list (-d)" -d "$stream"
run "read only, tags (-F) to /dev/null" -F "$stream"
