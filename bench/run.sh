#!/usr/bin/env bash
# Builds and runs the benchmarks beside OpenCV and prints the ratios.
#   bench/run.sh [benchmark filter regex]        (ROUNDS=n: rounds, default 3)
# Needs libopencv-dev and libbenchmark-dev; installs them (through sudo when not
# root) only when one is missing.
set -euo pipefail
cd "$(dirname "$0")/.."
missing=()
for pkg in libopencv-dev libbenchmark-dev; do
  dpkg -s "$pkg" >/dev/null 2>&1 || missing+=("$pkg")
done
if [ ${#missing[@]} -gt 0 ]; then
  echo "bench/run.sh: installing ${missing[*]} (needs root)" >&2
  sudo=""
  [ "$(id -u)" -eq 0 ] || sudo="sudo"
  $sudo apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq "${missing[@]}"
fi
cmake -S . -B build-bench -DCMAKE_BUILD_TYPE=Release -DVNX_BUILD_TESTS=OFF -DVNX_BUILD_DEMO=OFF >/dev/null
cmake --build build-bench -j2 --target vnxbench | grep -v '^\[' || true
filter=${1:-.}
rounds=${ROUNDS:-3}
# Each library runs in its own process, so idle worker threads of one (spinning
# after a parallel region) never steal the cores the other is measured on. The
# two alternate for a few rounds and each case keeps its best median, which
# shields the ratio from whatever else the machine was doing meanwhile.
# Google Benchmark prints its context (CPU, caches, load) on stderr; Debian's
# package adds "Library was built as DEBUG", which is about the harness, not about
# either measured library (both are built Release): the context is kept in a log.
rm -f build-bench/bench-*.json build-bench/bench-context.log
for round in $(seq "$rounds"); do
  for lib in vnx cv; do
    build-bench/bench/vnxbench --benchmark_filter="^$lib:.*($filter)" --benchmark_repetitions=5 \
      --benchmark_report_aggregates_only=true --benchmark_out="build-bench/bench-$lib-$round.json" \
      --benchmark_out_format=json >/dev/null 2>>build-bench/bench-context.log ||
      { cat build-bench/bench-context.log >&2; exit 1; }
  done
done
python3 bench/ratios.py build-bench/bench-*.json
