#!/usr/bin/python3
"""Prints tables of bench_settings_file's results (its JSON on standard input), each with its ratio to the floor.

With a folder as argument, also plots each kind of work into that folder.
"""

import collections
import json
import pathlib
import sys

import matplotlib

matplotlib.use("svg")
import matplotlib.pyplot as plt  # noqa: E402: the backend must be chosen first

STORES = ["floor", "ours", "QSettings", "GKeyFile", "SimpleIni", "inih"]
TITLES = {
    "list": "List the sites, the file not yet read",
    "read cold": "Read a key, the file not yet read",
    "read warm": "Read a key again",
    "load": "Load a site, the file not yet read",
    "save": "Save a site (36 lines)",
    "delete": "Delete a section",
}
MEMORY = "Memory after reading a key of every site, as a multiple of the file"


def shown(ns):
    for unit, size in (("s", 1e9), ("ms", 1e6), ("µs", 1e3)):
        if ns >= size:
            return f"{ns / size:.3g} {unit}"
    return f"{ns:.3g} ns"


def medians(runs):
    """{work: {store: {sites: ns}}}, and for the memory {store: {sites: multiple of the file's size}}."""
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


def print_table(title, stores, cell):
    """stores: {store: {sites: value}}; cell(store, sites) formats one value."""
    sizes = sorted(stores["ours"])
    print(f"\n{title}\n\n| | " + " | ".join(f"{size} sites" for size in sizes) + " |")
    print("|---|" + "---|" * len(sizes))
    for store in filter(stores.get, STORES):
        print(f"| {store} | " + " | ".join(cell(store, size) for size in sizes) + " |")


def with_floor_ratio(stores):
    def cell(store, size):
        ratio = stores[store][size] / stores["floor"][size]
        return shown(stores[store][size]) + ("" if store == "floor" else f" ({ratio:.3g} ×)")

    return cell


def plot(path, title, unit, stores, size_of_unit=1, scale="linear"):
    figure, axes = plt.subplots(figsize=(6, 3.5), layout="constrained")
    for store in filter(stores.get, STORES):
        sizes = sorted(stores[store])
        style = {"linestyle": "--", "color": "black"} if store == "floor" else {"marker": "o"}
        axes.plot(sizes, [stores[store][size] / size_of_unit for size in sizes], label=store, **style)
    axes.set(title=title, xlabel="sites", xscale="log", ylabel=unit, yscale=scale)
    if scale == "linear":
        axes.set_ylim(bottom=0)
    axes.grid(True, which="major", alpha=0.3)
    axes.legend(fontsize="small")
    figure.savefig(path, metadata={"Date": None})
    plt.close(figure)


def main():
    times, memory = medians(json.load(sys.stdin)["benchmarks"])
    for work, title in TITLES.items():
        print_table(title, times[work], with_floor_ratio(times[work]))
    print_table(MEMORY, memory, lambda store, size: f"{memory[store][size]:.2f}")

    if len(sys.argv) > 1:
        folder = pathlib.Path(sys.argv[1])
        for work, title in TITLES.items():
            plot(folder / f"bench-{work.replace(' ', '-')}.svg", title, "µs", times[work], 1e3, "log")
        plot(folder / "bench-memory.svg", MEMORY, "times the file", memory)


if __name__ == "__main__":
    main()
