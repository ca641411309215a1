#!/usr/bin/env bash
# Builds and runs the benchmarks beside OpenCV and prints the ratios.
#   bench/run.sh [benchmark filter regex]
set -euo pipefail
cd "$(dirname "$0")/.."
if ! dpkg -s libopencv-dev >/dev/null 2>&1 || ! dpkg -s libbenchmark-dev >/dev/null 2>&1; then
  apt-get update -qq && DEBIAN_FRONTEND=noninteractive apt-get install -y -qq libopencv-dev libbenchmark-dev
fi
cmake -S . -B build-bench -DCMAKE_BUILD_TYPE=Release -DVNX_BUILD_TESTS=OFF -DVNX_BUILD_DEMO=OFF >/dev/null
cmake --build build-bench -j2 --target vnxbench
filter=${1:-.}
rounds=${ROUNDS:-3}
# Each library runs in its own process, so idle worker threads of one (spinning
# after a parallel region) never steal the cores the other is measured on. The
# two alternate for a few rounds and each case keeps its best median, which
# shields the ratio from whatever else the machine was doing meanwhile.
rm -f build-bench/bench-*.json
for round in $(seq "$rounds"); do
  for lib in vnx cv; do
    build-bench/bench/vnxbench --benchmark_filter="^$lib:.*($filter)" --benchmark_repetitions=5 \
      --benchmark_report_aggregates_only=true --benchmark_out="build-bench/bench-$lib-$round.json" \
      --benchmark_out_format=json >/dev/null
  done
done
python3 bench/ratios.py build-bench/bench-*.json
