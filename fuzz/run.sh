#!/usr/bin/env bash
# Builds every libFuzzer harness of fuzz/ with clang (library and harness instrumented
# with -fsanitize=fuzzer,address,undefined) in build-fuzz/, runs each for FUZZ_SECONDS
# (default 20) on a copy of its seed corpus in fuzz/corpus/<harness>/, and exits
# non-zero when any harness reports a failure. Before fuzzing, each harness replays the
# inputs of fuzz/repro/<harness>/ (faults found earlier: each must stay fixed).
# New reproducers are kept in build-fuzz/fuzz-artifacts/<harness>/; replay one with
# build-fuzz/fuzz/fuzz_<harness> FILE (FZ_TRACE=1 prints each call's arguments).
# The seeds are minimized corpora of longer runs (libFuzzer -merge=1), 40 small files each.
#   FUZZ_SECONDS   seconds per harness (default 20)
#   FUZZ_ONLY      run only harnesses whose name matches this regex
#   FUZZ_SEED      libFuzzer's random seed (default 1, so a CI run repeats; 0 picks one)
#   FUZZ_SKIP      semicolon list of VNX_FUZZ_SKIP_* macros (inputs to step over); by default
#                  the line of 2^30 + 1 pixels, whose 1 GiB walk under the sanitizers outlasts a
#                  fuzz timeout (the line-sampling tests walk lines past 2^30 in the ordinary build)
set -u
cd "$(dirname "$0")/.."
seconds=${FUZZ_SECONDS:-20}
build=build-fuzz

CC=clang CXX=clang++ cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVNX_BUILD_FUZZ=ON \
  -DVNX_BUILD_TESTS=OFF -DVNX_BUILD_DEMO=OFF -DVNX_BUILD_BENCH=OFF "-DVNX_FUZZ_SKIP=${FUZZ_SKIP-VNX_FUZZ_SKIP_HUGE_LINES}" >/dev/null ||
  { echo "fuzz: configure failed" >&2; exit 2; }
cmake --build "$build" --target vnx_fuzz -j2 >/dev/null || { echo "fuzz: build failed" >&2; exit 2; }

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
rm -rf "$build/fuzz-artifacts"
failed=0
printf '%-16s %8s %10s %8s  %s\n' harness seconds runs exec/s result
for exe in "$build"/fuzz/fuzz_*; do
  [ -x "$exe" ] || continue
  name=$(basename "$exe")
  name=${name#fuzz_}
  [[ $name =~ ${FUZZ_ONLY:-.} ]] || continue
  mkdir -p "$work/$name/corpus" "$work/$name/artifacts"
  cp fuzz/corpus/"$name"/* "$work/$name/corpus/" 2>/dev/null
  start=$(date +%s)
  rc=0
  for repro in fuzz/repro/"$name"/*; do
    [ -f "$repro" ] || continue
    if ! "$exe" "$repro" -rss_limit_mb=2048 -timeout=10 >>"$work/$name/log" 2>&1; then
      rc=1
      echo "    reproducer still fails: $repro" >>"$work/$name/replay"
    fi
  done
  if [ $rc -eq 0 ]; then
    "$exe" "$work/$name/corpus" -max_total_time="$seconds" -rss_limit_mb=2048 -timeout=10 -seed="${FUZZ_SEED:-1}" \
      -artifact_prefix="$work/$name/artifacts/" -print_final_stats=1 >>"$work/$name/log" 2>&1
    rc=$?
  fi
  runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$work/$name/log")
  rate=$(sed -n 's/^stat::average_exec_per_sec: *//p' "$work/$name/log")
  result=ok
  if [ $rc -ne 0 ]; then
    failed=1
    result="FAILED (exit $rc)"
    mkdir -p "$build/fuzz-artifacts/$name"
    cp "$work/$name/artifacts/"* "$build/fuzz-artifacts/$name/" 2>/dev/null
    cp "$work/$name/log" "$build/fuzz-artifacts/$name/log.txt"
  fi
  printf '%-16s %8s %10s %8s  %s\n' "$name" "$(($(date +%s) - start))" "${runs:-?}" "${rate:-?}" "$result"
  if [ $rc -ne 0 ]; then
    cat "$work/$name/replay" 2>/dev/null
    grep -E 'contract violation|runtime error|ERROR: (Address|Leak|libFuzzer)|SUMMARY' "$work/$name/log" | head -5 | sed 's/^/    /'
    ls "$build/fuzz-artifacts/$name/" | grep -v log.txt | sed "s|^|    reproducer: $build/fuzz-artifacts/$name/|"
  fi
done
exit $failed
