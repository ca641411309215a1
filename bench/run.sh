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
# Each library runs in its own process: idle worker threads of one (spinning
# after a parallel region) must not steal the cores the other is measured on.
for lib in vnx cv; do
  build-bench/bench/vnxbench --benchmark_filter="^$lib:.*($filter)" --benchmark_repetitions=5 \
    --benchmark_report_aggregates_only=true --benchmark_out="build-bench/bench-$lib.json" \
    --benchmark_out_format=json >/dev/null
done
python3 bench/ratios.py build-bench/bench-vnx.json build-bench/bench-cv.json
