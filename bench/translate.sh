#!/usr/bin/env bash
# Times the whole translation (stream read, flattened, mapped, project written) of
# generated streams, flat, tree and paths at each size, and of the SRAM macro of the
# public corpus, beside KLayout's batch read and flatten of the same files, and prints
# one table with the ratios of time and peak memory, ours over KLayout's.
#   bench/translate.sh path/to/gds [--runs K] [--no-sram] [flat polygons ...]
# The sizes default to 100000 1000000 10000000. With --runs K each row takes the
# median of K runs, ours and KLayout's alternating. The macro is read from
# CORPUS_DIR (default: shared/corpus/public beside the repository) when present.
# KLayout is installed from Debian when missing and we may (root); without it its
# columns stay empty.
set -euo pipefail
usage() {
  echo "usage: $0 path/to/gds [--runs K] [--no-sram] [flat polygons ...]" >&2
  exit 2
}
[ $# -ge 1 ] || usage
gds=$(realpath "$1")
shift
[ -x "$gds" ] || { echo "$gds: not an executable" >&2; exit 2; }
runs=1
sram=1
sizes=()
while [ $# -gt 0 ]; do
  case $1 in
    --runs)
      [ $# -ge 2 ] || usage
      runs=$2
      shift 2
      [[ $runs =~ ^[1-9][0-9]*$ ]] || { echo "--runs wants a positive count, not '$runs'" >&2; exit 2; } ;;
    --no-sram) sram=0; shift ;;
    -*) echo "unknown option '$1'" >&2; usage ;;
    *)
      [[ $1 =~ ^[1-9][0-9]*$ ]] || { echo "a size is a positive count of polygons, not '$1'" >&2; exit 2; }
      sizes+=("$1")
      shift ;;
  esac
done
[ ${#sizes[@]} -gt 0 ] || sizes=(100000 1000000 10000000)
here=$(dirname "$(realpath "$0")")
build=$(dirname "$(dirname "$(dirname "$(dirname "$gds")")")")
gen="$build/bench/gdsgen"
work="$build/bench"
mkdir -p "$work"
[ -x "$gen" ] || { echo "$gen is missing: build the target gdsgen" >&2; exit 2; }
corpus=${CORPUS_DIR:-$here/../../shared/corpus/public}
sram_file="$corpus/ihp__RM_IHPSG13_1P_1024x64_c2_bm_bist.gds"
# Named so that both programs flatten the same cell, whatever a default would pick.
sram_top=RM_IHPSG13_1P_1024x64_c2_bm_bist

if ! command -v klayout > /dev/null && [ "$(id -u)" = 0 ] && command -v apt-get > /dev/null; then
  echo "installing klayout" >&2
  DEBIAN_FRONTEND=noninteractive apt-get install -y -q klayout > /dev/null 2>&1 || true
fi
have_klayout=0
command -v klayout > /dev/null && have_klayout=1

# Wall seconds and peak KiB of one command, on one line, or nothing when it failed;
# its output goes to last.out and last.err.
measure() {
  if /usr/bin/time -o "$work/time.out" -f '%e %M' "$@" > "$work/last.out" 2> "$work/last.err"; then
    tail -n 1 "$work/time.out"
  fi
}

median() {
  printf '%s\n' "$@" | sort -g | awk '{ v[NR] = $1 } END { print (NR % 2 ? v[(NR + 1) / 2] : (v[NR / 2] + v[NR / 2 + 1]) / 2) }'
}

# One row: kind, stream, then the structure to translate (empty: the default).
row() {
  local kind=$1 stream=$2 cell=$3
  local base
  base="$work/translate_$(basename "$stream" .gds)"
  local gds_args=() kl_args=()
  if [ -n "$cell" ]; then
    gds_args=(-p "$cell")
    kl_args=(-rd cell="$cell")
  fi
  rm -f "$base.vel" "$base.lay"
  # The layer file is made by a first run, so the timed runs read it as a user's would.
  "$gds" -L "${gds_args[@]}" -l "$base.lay" "$stream" > "$work/last.out" 2>&1 \
    || { echo "no layer file made for $stream:" >&2; cat "$work/last.out" >&2; exit 1; }
  local gs=() gk=() ks=() kk=() s k i
  for ((i = 0; i < runs; ++i)); do
    rm -f "$base.vel"
    read -r s k < <(measure "$gds" "${gds_args[@]}" -l "$base.lay" -o "$base.vel" "$stream") || true
    if [ -z "${k:-}" ] || [ ! -f "$base.vel" ]; then
      echo "no project written for $stream:" >&2
      cat "$work/last.out" "$work/last.err" >&2
      rm -f "$base.vel" "$base.lay"
      exit 1
    fi
    gs+=("$s") gk+=("$k")
    if [ $have_klayout = 1 ]; then
      s="" k=""
      read -r s k < <(measure klayout -b -r "$here/klayout_flatten.rb" -rd input="$stream" "${kl_args[@]}") || true
      if [ -n "$k" ]; then
        ks+=("$s") kk+=("$k")
      else
        echo "klayout failed on $stream:" >&2
        cat "$work/last.err" >&2
      fi
    fi
  done
  # The project's polygon count, written before its polygons.
  local polygons
  polygons=$(grep -m1 '^NUM ' "$base.vel" | cut -d' ' -f2) \
    || { echo "no polygon count (NUM) in the project of $stream" >&2; rm -f "$base.vel" "$base.lay"; exit 1; }
  local file_b vel_b
  file_b=$(stat -c %s "$stream")
  vel_b=$(stat -c %s "$base.vel")
  rm -f "$base.vel" "$base.lay"
  local kl_s="" kl_k=""
  if [ ${#ks[@]} -gt 0 ]; then
    kl_s=$(median "${ks[@]}")
    kl_k=$(median "${kk[@]}")
  fi
  awk -v kind="$kind" -v n="$polygons" -v fb="$file_b" -v gs="$(median "${gs[@]}")" -v gk="$(median "${gk[@]}")" \
      -v vb="$vel_b" -v ks="$kl_s" -v kk="$kl_k" \
    'BEGIN {
       printf "%-6s %10d %8.2f %8.2f %9.0f %11.1f", kind, n, fb / 1e6, gs, gk / 1024, vb / 1e6
       if (ks != "")
         printf " %9.2f %9.0f %8.2f %8.2f\n", ks, kk / 1024, (ks > 0 ? gs / ks : 0), gk / kk
       else
         printf " %9s %9s %8s %8s\n", "-", "-", "-", "-"
     }'
}

printf '%-6s %10s %8s %8s %9s %11s %9s %9s %8s %8s\n' \
  stream polygons "file MB" "gds s" "peak MiB" "project MB" "klayout s" "peak MiB" "time x" "memory x"
for size in "${sizes[@]}"; do
  for kind in flat tree paths; do
    stream="$work/bench_${kind}_$size.gds"
    case $kind in
      flat) [ -f "$stream" ] || "$gen" "$stream" "$size" > /dev/null ;;
      *) [ -f "$stream" ] || "$gen" "$stream" "$size" "--$kind" > /dev/null ;;
    esac
    row "$kind" "$stream" ""
  done
done
if [ $sram = 1 ]; then
  if [ -f "$sram_file" ]; then
    row sram "$sram_file" "$sram_top"
  else
    echo "no SRAM row: $sram_file is missing" >&2
  fi
fi
