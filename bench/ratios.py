#!/usr/bin/env python3
"""Reads Google Benchmark JSON files and prints, for each case measured by both
libraries, the median wall time of each in microseconds and the ratio OpenCV
median / ours (above 1: we are faster). A case measured in several files keeps
its best median."""
import json
import sys

SCALE_TO_US = {"ns": 1e-3, "us": 1.0, "ms": 1e3, "s": 1e6}

med = {}
for path in sys.argv[1:]:
    for b in json.load(open(path))["benchmarks"]:
        if b.get("aggregate_name") != "median":
            continue
        name = b["run_name"].replace("/real_time", "")
        us = b["real_time"] * SCALE_TO_US[b.get("time_unit", "ns")]
        med[name] = min(med.get(name, float("inf")), us)
rows = []
for name, t in med.items():
    if name.startswith("vnx:"):
        twin = "cv:" + name[4:]
        if twin in med:
            rows.append((name[4:], t, med[twin], med[twin] / t))
width = max([len(r[0]) for r in rows] + [4])
print(f"{'case':<{width}}  {'vnxcv µs':>10}  {'opencv µs':>10}  ratio = OpenCV median / ours")
for case, ours, theirs, ratio in sorted(rows):
    print(f"{case:<{width}}  {ours:>10.1f}  {theirs:>10.1f}  {ratio:5.2f}x")
