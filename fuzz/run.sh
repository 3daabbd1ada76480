#!/usr/bin/env bash
# Builds the fuzz targets with clang and libFuzzer in build-fuzz and runs each in turn.
#   fuzz/run.sh [seconds per target, default 60]
# FUZZ_TARGETS   the targets to run, by default every one (stream text project translate layer equation material rules technology xml)
# FUZZ_FINDINGS  where inputs that fail go, by default fuzz/regressions/<target>/
# FUZZ_BUILD     the build directory, by default build-fuzz
# Each target grows its corpus in fuzz/corpus/<target>/, seeded from fuzz/seeds/<target>/.
# A failing input ends a libFuzzer run; the target is started again for the rest of its time,
# at most five times.
set -euo pipefail
cd "$(dirname "$0")/.."
top=$PWD
seconds=${1:-60}
targets=(${FUZZ_TARGETS:-stream text project translate layer equation material rules technology xml})
findings=${FUZZ_FINDINGS:-$top/fuzz/regressions}
build=${FUZZ_BUILD:-$top/build-fuzz}

# clang and its libFuzzer runtime come from Debian (libclang-rt-dev follows the default clang).
runtime() { [ -f "$(clang++ -print-resource-dir)/lib/linux/libclang_rt.fuzzer-$(uname -m).a" ]; }
if ! command -v clang++ > /dev/null || ! runtime; then
  echo "Installing: clang libclang-rt-dev"
  [ "$(id -u)" -eq 0 ] || sudo=sudo
  export DEBIAN_FRONTEND=noninteractive
  ${sudo:-} apt-get update -q
  ${sudo:-} apt-get install -y -q --no-install-recommends clang libclang-rt-dev
fi

CC=clang CXX=clang++ cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=Release -DGDS_FUZZ=ON -DGDS_TESTS=OFF > /dev/null
cmake --build "$build" -j "${JOBS:-$(nproc)}" --target $(printf 'fuzz_%s ' "${targets[@]}")

# Inputs as large as the formats make sense of, and a limit that a slow input must not pass:
# a translation may flatten a large array, the others read in one pass.
options() {
  case $1 in
    stream) echo "-max_len=65536 -timeout=10" ;;
    text) echo "-max_len=16384 -timeout=10" ;;
    project) echo "-max_len=16384 -timeout=10" ;;
    translate) echo "-max_len=4096 -timeout=20" ;;
    layer) echo "-max_len=4096 -timeout=10" ;;
    equation) echo "-max_len=1024 -timeout=10" ;;
    *) echo "-timeout=10" ;;
  esac
}

summary=()
for target in "${targets[@]}"; do
  corpus=$top/fuzz/corpus/$target
  artifacts=$build/fuzz/artifacts/$target
  mkdir -p "$corpus" "$artifacts" "$findings/$target"
  [ -d "$top/fuzz/seeds/$target" ] && cp -n "$top/fuzz/seeds/$target"/* "$corpus"/ 2> /dev/null || true
  log=$build/fuzz/$target.log
  : > "$log"
  executions=0
  found=0
  end=$((SECONDS + seconds))
  for attempt in 1 2 3 4 5 6; do
    left=$((end - SECONDS))
    [ "$left" -gt 0 ] || break
    echo "== fuzz_$target: ${left}s"
    set +e
    (cd "$artifacts" && "$build/fuzz/fuzz_$target" $(options "$target") -max_total_time="$left" \
      -print_final_stats=1 -artifact_prefix="$artifacts/" "$corpus" > "$log.run" 2>&1)
    status=$?
    set -e
    cat "$log.run" >> "$log"
    runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log.run" | tail -n 1)
    [ -n "$runs" ] || runs=$(sed -n 's/^#\([0-9]*\).*/\1/p' "$log.run" | tail -n 1)
    executions=$((executions + ${runs:-0}))
    new=0
    for artifact in "$artifacts"/crash-* "$artifacts"/timeout-* "$artifacts"/oom-* "$artifacts"/leak-*; do
      [ -e "$artifact" ] || continue
      mv "$artifact" "$findings/$target/"
      echo "   finding: $findings/$target/$(basename "$artifact")"
      grep -m 3 -E 'ERROR|SUMMARY|Broken|runtime error' "$log.run" | sed 's/^/     /' || true
      new=$((new + 1))
    done
    found=$((found + new))
    # Stopped without a finding: out of time, or broken in a way that a restart won't mend.
    [ "$new" -gt 0 ] || { [ "$status" -eq 0 ] || echo "   fuzz_$target ended with status $status, see $log"; break; }
    [ "$found" -lt 5 ] || break
  done
  rm -f "$log.run"
  rate=$(awk -v n="$executions" -v s="$seconds" 'BEGIN { printf "%.0f", (s > 0 ? n / s : 0) }')
  summary+=("$(printf '%-10s %12d executions %8s/s %3d findings %6d corpus' "$target" "$executions" "$rate" "$found" \
    "$(ls "$corpus" | wc -l)")")
done

echo
printf '%s\n' "${summary[@]}"
