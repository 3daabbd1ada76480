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
