#!/usr/bin/env bash
# Generates streams of three shapes and sizes, then times reading them with
# gds and flattening them with gdsflat, and prints one table: wall time,
# peak memory and flat polygons per second of the flattening.
#   bench/run.sh path/to/gds [flat polygons ...]
# The sizes default to 100000 1000000 10000000; streams are kept in the
# build's bench directory and made again only when missing.
set -euo pipefail
gds=$(realpath "$1")
shift
sizes=("$@")
[ ${#sizes[@]} -gt 0 ] || sizes=(100000 1000000 10000000)
build=$(dirname "$(dirname "$(dirname "$(dirname "$gds")")")")
gen="$build/bench/gdsgen"
flat="$build/bench/gdsflat"
work="$build/bench"

# Wall seconds and peak KiB of one command, on one line.
measure() {
  { /usr/bin/time -f '%e %M' "$@" > "$work/last.out"; } 2>&1 | tail -n 1
}

printf '%-6s %10s %8s %9s %9s %9s %9s %11s %9s\n' \
  stream polygons "file MB" "read s" "peak MiB" "flat s" "walk s" "polygons/s" "peak MiB"
for size in "${sizes[@]}"; do
  for kind in flat tree paths; do
    stream="$work/bench_${kind}_$size.gds"
    case $kind in
      flat) mode="" ;;
      *) mode="--$kind" ;;
    esac
    [ -f "$stream" ] || "$gen" "$stream" "$size" $mode
    mb=$(awk -v b="$(stat -c %s "$stream")" 'BEGIN { printf "%.2f", b / 1e6 }')
    read -r read_s read_kib < <(cd "$work" && measure "$gds" -d "$stream")
    read -r flat_s flat_kib < <(measure "$flat" -r "$stream")
    # "structure S polygons N points P read R flatten F round G"
    polygons=$(awk '{ print $4 }' "$work/last.out")
    walk=$(awk '{ print $10 }' "$work/last.out")
    awk -v k="$kind" -v n="$polygons" -v mb="$mb" -v rs="$read_s" -v rk="$read_kib" -v fs="$flat_s" \
        -v w="$walk" -v fk="$flat_kib" \
      'BEGIN { printf "%-6s %10d %8s %9.2f %9.0f %9.2f %9.2f %11.0f %9.0f\n",
               k, n, mb, rs, rk / 1024, fs, w, (w > 0 ? n / w : 0), fk / 1024 }'
  done
done
