#!/usr/bin/env bash
# Shows what gds does with the example stream.
set -euo pipefail
gds=$(realpath "$1")
cd "$(dirname "$0")"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

echo "== gds -A -G chip.gds -d chip.txt   (make a stream from its text form, list it)"
"$gds" -A -G "$work/chip.gds" -d chip.txt
cmp -s "$work/chip.gds" chip.gds && echo "(identical to examples/chip.gds)"
echo
echo "== gds -v -d chip.gds   (read the stream, list its structures)"
"$gds" -v -d chip.gds
echo
echo "== gds -F chip.gds   (one tag per record)"
"$gds" -F chip.gds
echo
# The project stays after the demo, for a look with an editor.
out="${TMPDIR:-/tmp}/gds-demo"
mkdir -p "$out"
echo "== gds -v -l chip.lay -o $out/chip.vel chip.gds   (translate the stream into a project)"
"$gds" -v -l chip.lay -o "$out/chip.vel" chip.gds
echo "Project written to $out/chip.vel. It holds:"
awk '
    /^BOX / { levels = $2 + 1; printf "  a box of %s by %s with %d levels (the last one is ground)\n", $3, $4, levels }
    /^TECHLAY / { printf "  technology layer %s (%s) for stream layer %s, datatype %s\n", $3, $2, $5, $6 }
    /^NUM / { printf "  %s polygons:\n", $2; inpolygons = 1; next }
    /^END GEO/ { inpolygons = 0 }
    inpolygons && /^VIA POLYGON/ { via = 1; next }
    inpolygons && $1 ~ /^[0-9]+$/ && NF > 10 {
        key = "level " $1 ", " (via ? "via" : "metal")
        if (!(key in count)) order[++keys] = key
        count[key]++; via = 0
    }
    END { for (i = 1; i <= keys; ++i) printf "    %s: %d\n", order[i], count[order[i]] }
' "$out/chip.vel"
