#!/usr/bin/env python3
"""Runs peers_bench and prints one table per document: tqjson2 and each peer library side by
side, every figure followed by its ratio to tqjson2's. Standard library only.

    python3 bench/peers.py [--binary PATH] [--raw FILE] [benchmark arguments]

With --benchmark_repetitions=N the tables show the median of the N runs.

MB/s are of 10^6 bytes, of input for a read and of output for a write; the sizes of the
written texts are shown too. Tree and peak sizes are
heap bytes (malloc_usable_size of live blocks, plus tqjson2's pool of small blocks when the
library has one) over the figure before the read.
"""
import argparse
import json
import subprocess
import sys
from pathlib import Path

LIBRARIES = ["tqjson2", "cJSON", "jansson", "json-c", "RapidJSON", "simdjson"]
# Row label, benchmark kind, the figure taken from it and how it is shown.
ROWS = [
    ("read MB/s", "read", "bytes_per_second", lambda v: f"{v / 1e6:.1f}"),
    ("write indented MB/s", "write_indented", "bytes_per_second", lambda v: f"{v / 1e6:.1f}"),
    ("write minified MB/s", "write_minified", "bytes_per_second", lambda v: f"{v / 1e6:.1f}"),
    ("tree bytes (MB)", "memory", "tree_bytes", lambda v: f"{v / 1e6:.2f}"),
    ("peak bytes (MB)", "memory", "peak_bytes", lambda v: f"{v / 1e6:.2f}"),
    # The texts differ (indentation, separators, digits of doubles): MB/s of output compare
    # different amounts of text, so the amounts are shown too.
    ("indented text (MB)", "write_indented", "output_bytes", lambda v: f"{v / 1e6:.2f}"),
    ("minified text (MB)", "write_minified", "output_bytes", lambda v: f"{v / 1e6:.2f}"),
]


def run(binary, raw, extra):
    command = [str(binary), "--benchmark_format=json", "--benchmark_min_time=0.5", *extra]
    print("$ " + " ".join(command), file=sys.stderr, flush=True)
    # The benchmark's own messages (stderr) go straight to ours.
    result = subprocess.run(command, stdout=subprocess.PIPE, check=True, text=True)
    if raw:
        Path(raw).write_text(result.stdout)
    return json.loads(result.stdout)


def figures(report):
    """{(kind, document, library): benchmark record}; with --benchmark_repetitions, the median."""
    found = {}
    for record in report["benchmarks"]:
        parts = record.get("run_name", record["name"]).split("/")
        if len(parts) < 3:
            continue
        key = (parts[0], parts[1], parts[2])
        if record.get("run_type") == "aggregate":
            if record.get("aggregate_name") == "median":
                found[key] = record
        elif found.get(key, {}).get("run_type") != "aggregate":
            found[key] = record
    return found


def cell(record, field, show, reference):
    if record is None:
        return "-"
    if record.get("error_occurred"):
        return "error"
    value = record.get(field)
    if value is None:
        return "-"
    text = show(value)
    base = reference.get(field) if reference and not reference.get("error_occurred") else None
    if base:
        text += f" ({value / base:.2f}x)"
    return text


def table(found, document):
    header = [document] + LIBRARIES
    lines = []
    for label, kind, field, show in ROWS:
        reference = found.get((kind, document, "tqjson2"))
        lines.append([label] + [cell(found.get((kind, document, library)), field, show,
                                     reference) for library in LIBRARIES])
    widths = [max(len(row[i]) for row in [header] + lines) for i in range(len(header))]

    def format_row(row):
        return "| " + " | ".join(
            text.ljust(w) if i == 0 else text.rjust(w) for i, (text, w) in enumerate(zip(row, widths))
        ) + " |"

    out = [format_row(header), "|" + "|".join("-" * (w + 2) for w in widths) + "|"]
    out += [format_row(row) for row in lines]
    return "\n".join(out)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--binary", default=Path(__file__).resolve().parent.parent /
                        "build/bench/bench/peers_bench")
    parser.add_argument("--raw", help="also keep the benchmark's JSON report in this file")
    args, extra = parser.parse_known_args()
    report = run(args.binary, args.raw, extra)
    context = report.get("context", {})
    print(f"{context.get('date', '')}  {context.get('host_name', '')}  "
          f"{context.get('num_cpus', '?')} CPUs at {context.get('mhz_per_cpu', '?')} MHz")
    for key in ["cJSON", "jansson", "json-c", "RapidJSON", "simdjson",
                "tqjson2 small-block pool counted"]:
        if key in context:
            print(f"  {key}: {context[key]}")
    print("Ratios are to tqjson2's figure: above 1x is faster for MB/s, more memory for bytes.")
    print("'-' where a library has no such form.")
    found = figures(report)
    documents = []  # in the benchmark's order, each once
    for key in found:
        if key[1] not in documents:
            documents.append(key[1])
    for document in documents:
        print()
        print(table(found, document))


if __name__ == "__main__":
    main()
