#!/usr/bin/env python3
"""Prints the README's query table: one run of query_bench, medians of its repetitions.

    bench/query-table.py SIZE [--before OLD_QUERY_BENCH] [--repetitions N]

SIZE is 1MB or 10MB. Each row is a query: this engine, pugixml and libxml2 from the same run,
their ratios and the target. With --before, the XmlPlugin rows of another build's query_bench
run right after it fill a "before" column. Run from the repository root after building the
release preset.
"""
import argparse
import json
import subprocess

BENCH = "build/release/bin/query_bench"
MILLISECONDS = {"ns": 1e-6, "us": 1e-3, "ms": 1.0, "s": 1e3}


def medians(binary, size, repetitions, engines):
    engine_filter = "|".join(engines)
    output = subprocess.run(
        [binary, f"--benchmark_filter=^{size} .*\\| ({engine_filter})$",
         f"--benchmark_repetitions={repetitions}", "--benchmark_report_aggregates_only=true",
         # Repetitions of all rows in a random order: a machine whose speed drifts during the
         # run moves every engine's median alike, and the ratios stay meaningful.
         "--benchmark_enable_random_interleaving=true", "--benchmark_format=json"],
        check=True, capture_output=True, text=True).stdout
    # Rows in the order the benchmark registers them, whatever order they ran in.
    listed = subprocess.run([binary, "--benchmark_list_tests"], check=True, capture_output=True,
                            text=True).stdout.splitlines()
    times = {name[len(size) + 1:].rsplit(" | ", 1)[0]: {}
             for name in listed if name.startswith(size + " ")}
    for run in json.loads(output)["benchmarks"]:
        # One repetition reports its run, several their median.
        wanted = "median" if repetitions > 1 else None
        if run.get("aggregate_name") != wanted:
            continue
        query, engine = run["run_name"][len(size) + 1:].rsplit(" | ", 1)
        times.setdefault(query, {})[engine] = run["cpu_time"] * MILLISECONDS[run["time_unit"]]
    return times


def milliseconds(value):
    return f"{value:.3g} ms"


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("size", choices=["1MB", "10MB"])
    parser.add_argument("--before")
    parser.add_argument("--repetitions", type=int, default=3)
    arguments = parser.parse_args()

    times = medians(BENCH, arguments.size, arguments.repetitions, ["XmlPlugin", "pugixml", "libxml2"])
    before = (medians(arguments.before, arguments.size, arguments.repetitions, ["XmlPlugin"])
              if arguments.before else {})
    columns = ["before"] if before else []
    print(f"| {arguments.size} | " + " | ".join(
        columns + ["this build", "pugixml", "libxml2", "÷ pugixml", "÷ libxml2", "target"]) + " |")
    print("|---" * (7 + len(columns)) + "|")
    for query, row in times.items():
        mine, pugi, libxml = row["XmlPlugin"], row["pugixml"], row["libxml2"]
        predicate = "[" in query
        met = mine <= 3 * pugi and mine < libxml if predicate else mine <= 1.5 * pugi
        target = "≤3× pugixml, < libxml2" if predicate else "≤1.5× pugixml"
        cells = [milliseconds(before[query]["XmlPlugin"])] if before else []
        cells += [milliseconds(mine), milliseconds(pugi), milliseconds(libxml),
                  f"{mine / pugi:.2f}", f"{mine / libxml:.2f}",
                  f"{target}: {'met' if met else 'not met'}"]
        print(f"| `{query}` | " + " | ".join(cells) + " |")


if __name__ == "__main__":
    main()
