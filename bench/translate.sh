#!/usr/bin/env bash
# Times the whole translation (stream read, flattened, mapped, project written) of
# generated flat streams, and KLayout's batch read and flatten of the same files,
# and prints one table with the ratio of the two wall times.
#   bench/translate.sh path/to/gds [flat polygons ...]
# The sizes default to 100000 1000000 10000000. KLayout is installed from Debian
# when missing and we may (root); without it its columns stay empty.
set -euo pipefail
gds=$(realpath "$1")
shift
sizes=("$@")
[ ${#sizes[@]} -gt 0 ] || sizes=(100000 1000000 10000000)
here=$(dirname "$(realpath "$0")")
build=$(dirname "$(dirname "$(dirname "$(dirname "$gds")")")")
gen="$build/bench/gdsgen"
work="$build/bench"
mkdir -p "$work"

if ! command -v klayout > /dev/null && [ "$(id -u)" = 0 ] && command -v apt-get > /dev/null; then
  echo "installing klayout" >&2
  DEBIAN_FRONTEND=noninteractive apt-get install -y -q klayout > /dev/null 2>&1 || true
fi

# Wall seconds and peak KiB of one command, on one line; its output goes to last.out and last.err.
measure() {
  /usr/bin/time -o "$work/time.out" -f '%e %M' "$@" > "$work/last.out" 2> "$work/last.err" || true
  tail -n 1 "$work/time.out"
}

printf '%10s %8s %9s %9s %11s %11s %9s %9s %7s\n' \
  polygons "file MB" "gds s" "peak MiB" "polygons/s" "project MB" "klayout s" "peak MiB" ratio
for size in "${sizes[@]}"; do
  stream="$work/bench_flat_$size.gds"
  [ -f "$stream" ] || "$gen" "$stream" "$size"
  base="$work/translate_$size"
  rm -f "$base.vel" "$base.lay"
  # The layer file is made by a first run, so the timed run reads it as a user's would.
  "$gds" -L -l "$base.lay" "$stream" > /dev/null
  mb=$(awk -v b="$(stat -c %s "$stream")" 'BEGIN { printf "%.2f", b / 1e6 }')
  read -r gds_s gds_kib < <(measure "$gds" -l "$base.lay" -o "$base.vel" "$stream")
  [ -f "$base.vel" ] || { echo "no project written for $size:" >&2; cat "$work/last.err" >&2; exit 1; }
  vel_mb=$(awk -v b="$(stat -c %s "$base.vel")" 'BEGIN { printf "%.1f", b / 1e6 }')
  kl_s="" kl_kib=""
  if command -v klayout > /dev/null; then
    read -r kl_s kl_kib < <(measure klayout -b -r "$here/klayout_flatten.rb" -rd input="$stream")
  fi
  awk -v n="$size" -v mb="$mb" -v gs="$gds_s" -v gk="$gds_kib" -v vm="$vel_mb" -v ks="$kl_s" -v kk="$kl_kib" \
    'BEGIN {
       printf "%10d %8s %9.2f %9.0f %11.0f %11s", n, mb, gs, gk / 1024, (gs > 0 ? n / gs : 0), vm
       if (ks != "") printf " %9.2f %9.0f %7.2f\n", ks, kk / 1024, (gs > 0 ? ks / gs : 0)
       else printf " %9s %9s %7s\n", "-", "-", "-"
     }'
  rm -f "$base.vel" "$base.lay"
done
