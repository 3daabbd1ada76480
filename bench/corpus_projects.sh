#!/usr/bin/env bash
# Translates every public corpus stream (its fullest structure, a fresh layer file) and
# compares a checksum of each project with bench/corpus_projects.sha256, so that work
# on speed can show that no project changed. The dates of the header are left out.
#   bench/corpus_projects.sh path/to/gds            compare; exit 1 on any difference
#   bench/corpus_projects.sh path/to/gds --write    write the list anew
# Projects of up to 100 MB are also made with -H (merged), as their own entries.
set -euo pipefail
gds=$(realpath "$1")
mode=${2:-}
here=$(dirname "$(realpath "$0")")
corpus=${CORPUS_DIR:-$here/../../shared/corpus}
list="$here/corpus_projects.sha256"
[ -d "$corpus/public" ] || { echo "no corpus at $corpus" >&2; exit 0; }
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

sum() {
  sed -e '/^\(DAT\|MDATE\|HDATE\|BUILT_BY_CREATED\) /d' "$1" | sha256sum | cut -c1-64
}

: > "$work/now"
for stream in "$corpus"/public/*.gds; do
  name=$(basename "$stream")
  oracle="$corpus/oracle/$name.json"
  best=""
  [ -f "$oracle" ] && best=$( (grep -o '"best": *"[^"]*"' "$oracle" || true) | head -n 1 | sed 's/.*: *"\(.*\)"/\1/')
  args=()
  [ -n "$best" ] && args=(-p "$best")
  rm -f "$work"/t.*
  if ! "$gds" "${args[@]}" -L -l "$work/t.lay" "$stream" > /dev/null 2>&1 ||
     ! "$gds" "${args[@]}" -l "$work/t.lay" -o "$work/t.vel" "$stream" > /dev/null 2>&1; then
    echo "failed  $name" >> "$work/now"
    continue
  fi
  echo "$(sum "$work/t.vel")  $name" >> "$work/now"
  if [ "$(stat -c %s "$work/t.vel")" -le 100000000 ]; then
    if "$gds" "${args[@]}" -H -l "$work/t.lay" -o "$work/t.vel" "$stream" > /dev/null 2>&1; then
      echo "$(sum "$work/t.vel")  $name -H" >> "$work/now"
    else
      echo "failed  $name -H" >> "$work/now"
    fi
  fi
done

if [ "$mode" = --write ]; then
  cp "$work/now" "$list"
  echo "wrote $(wc -l < "$list") checksums to $list"
  exit 0
fi
if diff "$list" "$work/now"; then
  echo "all $(wc -l < "$list") projects as before"
else
  echo "projects differ from $list (above: < before, > now)" >&2
  exit 1
fi
