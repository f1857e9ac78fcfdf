#!/usr/bin/env bash
# Runs one fuzzer from its corpus until it has used so many seconds of processor time, and prints
# how often it has executed its target.
#
#   scripts/fuzz.sh TARGET CPU_SECONDS [BUILD_FOLDER]
#
# TARGET is the NAME of a tests/fuzz/fuzz_NAME.cpp. The build folder (build/fuzz) is made when it is
# not there. New inputs and the inputs that fail stay in BUILD_FOLDER/found/TARGET.
set -euo pipefail

if (($# < 2 || $# > 3)); then
  sed -n '2,8s/^# \{0,1\}//p' "$0"
  exit 2
fi
target=$1
seconds=$2
cd "$(dirname "$0")/.."
build=${3:-build/fuzz}
corpus=tests/fuzz/corpus/$target
[[ -d $corpus ]] || { echo "no corpus $corpus" >&2; exit 2; }

[[ -f $build/build.ninja ]] ||
  cmake -S . -B "$build" -G Ninja -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_C_COMPILER=clang \
    -DKELVO_FUZZ=ON >/dev/null
cmake --build "$build" -j2 --target "fuzz_$target" >/dev/null

found=$build/found/$target
mkdir -p "$found"
log=$found.log
program=$(realpath "$build/tests/fuzz/fuzz_$target")

"$program" -timeout=20 -rss_limit_mb=2048 -print_final_stats=1 -artifact_prefix="$found/" \
  "$found" "$corpus" >"$log" 2>&1 &
fuzzer=$!
trap 'kill "$fuzzer" 2>/dev/null || true' EXIT
ticks_per_second=$(getconf CLK_TCK)
used=0
while kill -0 "$fuzzer" 2>/dev/null && ((used < seconds)); do
  sleep 1
  if stat=$(cat "/proc/$fuzzer/stat" 2>/dev/null); then
    read -r -a field <<<"${stat##*) }"
    used=$(((field[11] + field[12]) / ticks_per_second))
  fi
done
kill -INT "$fuzzer" 2>/dev/null || true
status=0
wait "$fuzzer" || status=$?
trap - EXIT

runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -1)
echo "$target: ${runs:-?} executions in ${used} s of processor time"
failures=$(find "$found" -maxdepth 1 \( -name 'crash-*' -o -name 'leak-*' -o -name 'timeout-*' -o \
  -name 'oom-*' -o -name 'slow-unit-*' \) | sort)
if [[ -n $failures ]]; then
  echo "inputs that fail:"
  echo "$failures"
  tail -40 "$log"
  exit 1
fi
# Interrupted by this script the fuzzer ends with its own code; any other end is a failure.
case $status in
  0 | 72 | 130) ;;
  *)
    tail -40 "$log"
    exit "$status"
    ;;
esac
