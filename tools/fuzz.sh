#!/usr/bin/env bash
# fuzz.sh [--coverage] [SECONDS [TARGET...]]: builds the fuzz targets (all unless named), runs each for
# its share of the seconds (60) and prints what came of it. Fails on a finding; the input of one lies
# in build/fuzz/findings, and the target takes its path to repeat it. What is learnt stays in
# build/fuzz/corpus for the next time. --coverage says afterwards how much of each layer was reached.
set -euo pipefail

cd "$(dirname "$0")/.."
out=$PWD/build/fuzz
with_coverage=no
if [ "${1:-}" = --coverage ]; then
  with_coverage=yes
  shift
fi
seconds=${1:-60}
if [ $# -gt 0 ]; then shift; fi

tools/install_packages.sh run test fuzz
build() { # build PRESET
  cmake --preset "$1" > /dev/null
  cmake --build --preset "$1" --target fuzzers
}
build fuzz >&2
python3 fuzz/make_seeds.py "$out/seeds" >&2

targets=("$@")
if [ ${#targets[@]} -eq 0 ]; then
  for program in "$out"/fuzz/*_fuzzer; do targets+=("$(basename "$program" _fuzzer)"); done
fi

jobs=$(nproc)
share=$((seconds * jobs / ${#targets[@]}))
[ "$share" -gt 0 ] || share=1
rm -rf "$out/findings" "$out/logs"
mkdir -p "$out/findings" "$out/logs"
memory=$(mktemp -d -p "$([ -w /dev/shm ] && echo /dev/shm || echo /tmp)" velmara-fuzz-XXXXXX)
trap 'rm -rf "$memory"' EXIT

fuzz_one() { # fuzz_one TARGET
  local target=$1 options=()
  mkdir -p "$out/corpus/$target" "$memory/$target"
  if [ -f "fuzz/dictionaries/$target.dict" ]; then
    options+=("-dict=fuzz/dictionaries/$target.dict")
  fi
  # Settings and logs of whoever runs this are no part of it.
  HOME=$memory/$target XDG_CONFIG_HOME=$memory/$target TMPDIR=$memory/$target LC_ALL=C \
    ASAN_OPTIONS=allocator_may_return_null=1:max_allocation_size_mb=4096 \
    UBSAN_OPTIONS=print_stacktrace=1 \
    "$out/fuzz/${target}_fuzzer" "${options[@]}" -max_total_time="$share" -timeout=25 \
    -rss_limit_mb=3000 -close_fd_mask=1 -print_final_stats=1 \
    -artifact_prefix="$out/findings/$target-" "$out/corpus/$target" "$out/seeds/$target" \
    > "$out/logs/$target.log" 2>&1 || echo "exit code $?" >> "$out/logs/$target.log"
}
for target in "${targets[@]}"; do
  while [ "$(jobs -rp | wc -l)" -ge "$jobs" ]; do wait -n; done
  fuzz_one "$target" &
done
wait

found=0
printf '%-16s %12s %9s %9s %9s  %s\n' target executions a-second corpus edges findings
for target in "${targets[@]}"; do
  log=$out/logs/$target.log
  executions=$(grep -oP 'number_of_executed_units: *\K\d+' "$log" || echo '?')
  pace=$(grep -oP 'average_exec_per_sec: *\K\d+' "$log" || echo '?')
  edges=$(grep -oP ' cov: \K\d+' "$log" | tail -n 1 || true)
  corpus=$(find "$out/corpus/$target" -type f | wc -l)
  what=none
  if grep -q '^exit code ' "$log"; then
    what=$(grep -m 1 -oP '^does not hold: .*|^SUMMARY: .*|^ERROR: .*' "$log" || echo "see the log")
    found=$((found + 1))
  fi
  printf '%-16s %12s %9s %9s %9s  %s\n' "$target" "$executions" "$pace" "$corpus" "${edges:-?}" "$what"
done

if [ "$with_coverage" = yes ]; then
  build fuzz-coverage >&2
  programs=()
  for target in "${targets[@]}"; do
    program=build/fuzz-coverage/fuzz/${target}_fuzzer
    programs+=(-object "$program")
    mkdir -p "$memory/$target"
    HOME=$memory/$target TMPDIR=$memory/$target LLVM_PROFILE_FILE=$memory/$target.profraw \
      "$program" -runs=0 -close_fd_mask=1 "$out/corpus/$target" "$out/seeds/$target" \
      > "$out/logs/$target-coverage.log" 2>&1
  done
  llvm-profdata merge -o "$out/coverage" "$memory"/*.profraw
  llvm-cov report "${programs[@]:1}" -instr-profile="$out/coverage" \
    -ignore-filename-regex='/(build|fuzz|tests)/|^/usr/' > "$out/coverage.txt"
  # Of the layers that a target reaches: lines, lines missed.
  awk -v root="$PWD/src/" '
    $1 ~ /\.(cpp|h)$/ { file = $1; sub(".*src/", "", file); split(file, part, "/")
                        lines[part[1]] += $8; missed[part[1]] += $9 }
    END { for (layer in lines) printf "%-10s %6d lines %5.1f %% reached\n", layer, lines[layer],
                                      100 * (1 - missed[layer] / lines[layer]) }' \
    "$out/coverage.txt" | sort
fi
exit $((found > 0))
