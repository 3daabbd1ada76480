#!/usr/bin/env bash
# Times the whole translation with -H (polygons merged per level and technology layer) of
# generated streams, beside the same translation without it and KLayout's batch read,
# flatten and merge per layer of the same files, and prints one table.
#   bench/merge.sh path/to/gds [flat polygons ...]
# The sizes default to 100000 1000000; each size is tried as a flat, a tree and a path stream, whose
# polygons lie apart, and as rows of overlapping hexagons, each row of one layer merging into one.
set -euo pipefail
gds=$(realpath "$1")
shift
sizes=("$@")
[ ${#sizes[@]} -gt 0 ] || sizes=(100000 1000000)
here=$(dirname "$(realpath "$0")")
build=$(dirname "$(dirname "$(dirname "$(dirname "$gds")")")")
gen="$build/bench/gdsgen"
work="$build/bench"
mkdir -p "$work"

measure() {
  /usr/bin/time -o "$work/time.out" -f '%e %M' "$@" > "$work/last.out" 2> "$work/last.err" || true
  tail -n 1 "$work/time.out"
}

printf '%-6s %9s %9s %9s %9s %10s %9s %9s %7s\n' \
  stream polygons "plain s" "-H s" "peak MiB" "merged" "klayout s" "peak MiB" ratio
for size in "${sizes[@]}"; do
  for kind in flat tree paths overlap; do
    stream="$work/bench_${kind}_$size.gds"
    case $kind in
      flat) [ -f "$stream" ] || "$gen" "$stream" "$size" ;;
      *) [ -f "$stream" ] || "$gen" "$stream" "$size" "--$kind" ;;
    esac
    base="$work/merge_${kind}_$size"
    rm -f "$base.vel" "$base.lay"
    "$gds" -L -l "$base.lay" "$stream" > /dev/null
    read -r plain_s plain_kib < <(measure "$gds" -l "$base.lay" -o "$base.vel" "$stream")
    read -r gds_s gds_kib < <(measure "$gds" -H -l "$base.lay" -o "$base.vel" "$stream")
    [ -f "$base.vel" ] || { echo "no project written for $kind $size:" >&2; cat "$work/last.err" >&2; exit 1; }
    merged=$(grep -m1 '^NUM ' "$base.vel" | cut -d' ' -f2)
    kl_s="" kl_kib=""
    if command -v klayout > /dev/null; then
      read -r kl_s kl_kib < <(measure klayout -b -r "$here/klayout_merge.rb" -rd input="$stream")
    fi
    awk -v k="$kind" -v n="$size" -v ps="$plain_s" -v gs="$gds_s" -v gk="$gds_kib" -v m="$merged" \
        -v ks="$kl_s" -v kk="$kl_kib" \
      'BEGIN {
         printf "%-6s %9d %9.2f %9.2f %9.0f %10d", k, n, ps, gs, gk / 1024, m
         if (ks != "") printf " %9.2f %9.0f %7.2f\n", ks, kk / 1024, (gs > 0 ? ks / gs : 0)
         else printf " %9s %9s %7s\n", "-", "-", "-"
       }'
    rm -f "$base.vel" "$base.lay"
  done
done
