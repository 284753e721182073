#!/usr/bin/python3
"""Tables and plots of bench_settings_file's figures (its JSON on standard input), each beside its floor.

Plots go into the folder of the argument, one for each kind of work.
"""

import collections
import json
import pathlib
import sys

import matplotlib

matplotlib.use("svg")
import matplotlib.pyplot as plt  # noqa: E402: the backend is chosen first

STORES = ["floor", "ours", "QSettings", "GKeyFile", "SimpleIni", "inih"]
TITLES = {
    "list": "List the sites, the file not yet read",
    "read cold": "Read a key, the file not yet read",
    "read warm": "Read a key again",
    "load": "Load a site, the file not yet read",
    "save": "Save a site (36 lines)",
    "delete": "Delete a section",
}


def shown(ns):
    for unit, size in (("s", 1e9), ("ms", 1e6), ("µs", 1e3)):
        if ns >= size:
            return f"{ns / size:.3g} {unit}"
    return f"{ns:.3g} ns"


def medians(runs):
    """{work: {store: {sites: ns}}}, and {store: {sites: times the file}} of the memory."""
    times = collections.defaultdict(lambda: collections.defaultdict(dict))
    memory = collections.defaultdict(dict)
    for run in runs:
        if run.get("aggregate_name", "median") != "median":
            continue
        work, store, sites = run["run_name"].split("/")[:3]
        if work == "memory":
            memory[store][int(sites)] = run["times the file"]
        else:
            times[work][store][int(sites)] = run["real_time"]
    return times, memory


def print_table(work, stores):
    sizes = sorted(stores["ours"])
    print(f"\n{TITLES[work]}\n\n| | " + " | ".join(f"{size} sites" for size in sizes) + " |")
    print("|---|" + "---|" * len(sizes))
    for store in STORES:
        if store not in stores:
            continue
        cells = []
        for size in sizes:
            ratio = stores[store][size] / stores["floor"][size]
            cells.append(shown(stores[store][size]) + ("" if store == "floor" else f" ({ratio:.3g} ×)"))
        print(f"| {store} | " + " | ".join(cells) + " |")


def plot(work, stores, folder):
    figure, axes = plt.subplots(figsize=(6, 3.5), layout="constrained")
    for store in STORES:
        if store in stores:
            sizes = sorted(stores[store])
            style = {"linestyle": "--", "color": "black"} if store == "floor" else {"marker": "o"}
            axes.loglog(sizes, [stores[store][size] / 1e3 for size in sizes], label=store, **style)
    axes.set(title=TITLES[work], xlabel="sites", ylabel="µs")
    axes.grid(True, which="major", alpha=0.3)
    axes.legend(fontsize="small")
    figure.savefig(folder / f"bench-{work.replace(' ', '-')}.svg", metadata={"Date": None})
    plt.close(figure)


def main():
    times, memory = medians(json.load(sys.stdin)["benchmarks"])
    for work in TITLES:
        print_table(work, times[work])
        if len(sys.argv) > 1:
            plot(work, times[work], pathlib.Path(sys.argv[1]))
    print("\nMemory once a key of every site was read, in times the file\n")
    sizes = sorted(memory["ours"])
    print("| | " + " | ".join(f"{size} sites" for size in sizes) + " |")
    print("|---|" + "---|" * len(sizes))
    for store, figures in memory.items():
        print(f"| {store} | " + " | ".join(f"{figures[size]:.2f}" for size in sizes) + " |")


if __name__ == "__main__":
    main()
