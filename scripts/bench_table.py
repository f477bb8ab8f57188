#!/usr/bin/env python3
"""Turns the benchmarks' JSON into the table of bench/baseline.md.

A benchmark tells what it is measured against in one of two ways. Its label names other benchmarks, as in
"vs=inflate_zlib" (several are separated by spaces): the ratio is that of the two medians. Or it runs its reference
itself, in turns with its own work, and gives the counter `ratio`. Below 1 is faster than the reference.
"""

import json
import re
import resource
import statistics
import subprocess
import sys
import tempfile
import time


def milliseconds(run):
    """Processor time of one round: the benchmark's own clock if it has one."""
    if "ms" in run:
        return run["ms"]
    own_clock = "/manual_time" in run["run_name"]
    return run["real_time" if own_clock else "cpu_time"] * {"ns": 1e-6, "us": 1e-3, "ms": 1.0, "s": 1e3}[run["time_unit"]]


def medians(benchmarks):
    """One record a benchmark, in order of first appearance, with the medians over its repetitions."""
    runs = {}
    for run in benchmarks:
        if run.get("run_type", "iteration") == "iteration" and not run.get("error_occurred"):
            runs.setdefault(re.sub(r"/(manual_time|iterations:\d+|repeats:\d+)", "", run["run_name"]), []).append(run)
    table = {}
    for name, repetitions in runs.items():
        def median(key):
            values = [run[key] for run in repetitions if run.get(key)]
            return statistics.median(values) if values else 0

        ms = statistics.median(milliseconds(run) for run in repetitions)
        bytes_done, items = median("bytes_per_second") * ms / 1e3, median("items_per_second") * ms / 1e3
        nanoseconds = median("ns_per_item") or (ms * 1e6 / (items or bytes_done) if items or bytes_done else 0)
        table[name] = {
            "ms": ms,
            "label": repetitions[0].get("label", ""),
            "ns": nanoseconds,
            "size": f"{items:,.0f} items" if items else f"{bytes_done / 1e6:.1f} MB" if bytes_done else "",
            "ratio": median("ratio"),
            "memory": median("memory_ratio"),
        }
        for counter in ("points", "quads"):
            if median(counter):
                table[name]["size"] += f" {median(counter):,.0f} {counter}"
    return table


def ratios(record, table):
    """The ratios to what the benchmark is measured against, such as "0.41 `inflate_zlib`"."""
    for reference in re.findall(r"vs=(\S+)", record["label"]):
        yield f"{record['ms'] / table[reference]['ms']:.2f} `{reference}`" if reference in table else f"? `{reference}`"
    if record["ratio"]:
        yield f"{record['ratio']:.2f} in turns"
    if record["memory"]:
        yield f"{record['memory']:.3f} in memory"


def picture_row(program):
    """A picture of a whole plant, the program's start included: time on the wall, all cores, and memory at its peak."""
    times = []
    with tempfile.TemporaryDirectory() as folder:
        command = [program, "render", "Betula pendula", "--size", "512", "--samples", "64", "-o", folder + "/birch.png"]
        for _ in range(3):
            start = time.monotonic()
            subprocess.run(command, capture_output=True, check=True)
            times.append(time.monotonic() - start)
    megabytes = resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss / 1000
    return f"| `picture of the adult birch` | 512 x 512 pixels, 64 samples | {1000 * statistics.median(times):,.0f} on the wall |  | {megabytes:.0f} MB at the peak |"


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
    print("Times are medians of processor time over the repetitions, all benchmarks interleaved at random. Where the size is")
    print("in MB an item is a byte. \"In turns\" is the ratio to the reference that the workload's own name tells.\n")
    print(f"- machine: {models[0] if models else 'unknown'}, {context['num_cpus']} cores")
    print(f"- compiler: {compiler}, {context.get('library_build_type', '')} benchmark library".rstrip(", "))
    print(f"- date: {context['date'][:10]}\n")
    print("| workload | size | median ms | ns per item | ratio |")
    print("|---|---|---:|---:|---|")
    for name, record in sorted(table.items()):
        nanoseconds = f"{record['ns']:.3g}" if record["ns"] else ""
        size = record["size"].strip()
        print(f"| `{name}` | {size} | {record['ms']:.3g} | {nanoseconds} | {', '.join(ratios(record, table))} |")
    if len(sys.argv) > 2:
        print(picture_row(sys.argv[2]))


main()
