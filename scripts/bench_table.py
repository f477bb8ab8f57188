#!/usr/bin/env python3
"""Turns the benchmarks' JSON into the table of bench/baseline.md.

A benchmark names what it is measured against in its label, as in "vs=inflate_bare" (several are separated by spaces;
other words of the label are its size, such as "36 MB"). Its counter `items` (or items_per_second) gives the time of
one item. The ratio is its median CPU time by that of the benchmark named: below 1 is faster.
"""

import json
import re
import statistics
import subprocess
import sys


def medians(benchmarks):
    """One record a benchmark, in order of first appearance, with the median over its repetitions."""
    runs = {}
    for run in benchmarks:
        if run.get("run_type", "iteration") == "iteration" and not run.get("error_occurred"):
            runs.setdefault(run["run_name"], []).append(run)
    to_ms = {"ns": 1e-6, "us": 1e-3, "ms": 1.0, "s": 1e3}
    table = {}
    for name, repetitions in runs.items():
        first = repetitions[0]
        ms = statistics.median(r["cpu_time"] * to_ms[r["time_unit"]] for r in repetitions)
        rates = [r["items_per_second"] for r in repetitions if r.get("items_per_second")]
        items = first.get("items") or (statistics.median(rates) * ms / 1e3 if rates else 0)
        table[name] = {"label": first.get("label", ""), "ms": ms, "items": items}
    return table


def ratios(record, table):
    """The ratios to what the label names, such as "0.41 inflate_bare"."""
    for reference in re.findall(r"vs=(\S+)", record["label"]):
        # A reference without arguments stands for the one benchmark of that name, whatever its arguments.
        fits = [name for name in table if name == reference or name.split("/")[0] == reference]
        yield f"{record['ms'] / table[fits[0]]['ms']:.2f} `{reference}`" if fits else f"? `{reference}`"


def size(record):
    words = re.sub(r"vs=\S+", "", record["label"]).strip()
    return words or (f"{record['items']:,.0f} items" if record["items"] else "")


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        results = json.load(file)
    table = medians(results["benchmarks"])
    context = results["context"]
    compiler = subprocess.run(["c++", "--version"], capture_output=True, text=True, check=True).stdout.splitlines()[0]
    with open("/proc/cpuinfo", encoding="utf-8") as file:
        models = re.findall(r"model name\s*:\s*(.*)", file.read())

    print("# Benchmark baseline\n")
    print("Written by `scripts/bench`; what each workload does stands in [docs/performance.md](../docs/performance.md).")
    print("Times are medians of CPU time over the repetitions, all benchmarks interleaved at random.\n")
    print(f"- machine: {models[0] if models else 'unknown'}, {context['num_cpus']} cores")
    print(f"- compiler: {compiler}, {context.get('library_build_type', '')} benchmark library".rstrip(", "))
    print(f"- date: {context['date'][:10]}\n")
    print("| workload | size | median ms | ns per item | ratio |")
    print("|---|---|---:|---:|---|")
    for name, record in table.items():
        per_item = f"{record['ms'] * 1e6 / record['items']:.1f}" if record["items"] else ""
        print(f"| `{name}` | {size(record)} | {record['ms']:.3g} | {per_item} | {', '.join(ratios(record, table))} |")


main()
