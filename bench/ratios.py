#!/usr/bin/env python3
"""Reads Google Benchmark JSON files and prints, for each case measured by both
libraries, OpenCV's median time over ours (above 1: we are faster). A case
measured in several files keeps its best median."""
import json
import sys

med = {}
for path in sys.argv[1:]:
    for b in json.load(open(path))["benchmarks"]:
        if b.get("aggregate_name") != "median":
            continue
        name = b["run_name"]
        med[name] = min(med.get(name, float("inf")), b["real_time"])
rows = []
for name, t in med.items():
    if name.startswith("vnx:"):
        twin = "cv:" + name[4:]
        if twin in med:
            rows.append((name[4:], t, med[twin], med[twin] / t))
width = max([len(r[0]) for r in rows] + [4])
print(f"{'case':<{width}}  {'vnxcv':>10}  {'opencv':>10}  ratio")
for case, ours, theirs, ratio in sorted(rows):
    print(f"{case:<{width}}  {ours:>10.1f}  {theirs:>10.1f}  {ratio:5.2f}x")
