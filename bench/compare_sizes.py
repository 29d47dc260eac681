#!/usr/bin/python3
"""Sizing one large item, against other programs; and six categories against their folders at once.

compare_sizes.py BIN [RUNS] makes a seeded tree of 40,000 directories and 400,000 small sparse files
with BIN/bench_make_tree, runs every program in turn, warm, and prints the medians, their ratio to
this program's and the peak memory (which is told no lower than this script's own, some 15 MiB).
"""
import os
import pathlib
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

DIRECTORIES, FILES, SEED = 40_000, 400_000, 7


def run(command, environment):
    """Seconds and peak resident KiB of one run."""
    start = time.perf_counter()
    process = subprocess.Popen(command, env=environment, stdout=subprocess.DEVNULL,
                               stderr=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    seconds = time.perf_counter() - start
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        sys.exit(f"{command[0]} ended with {process.returncode}")
    return seconds, usage.ru_maxrss


def compare(rows, runs):
    """rows: name -> (command, environment). The first row is what the others are measured against."""
    times = {name: [] for name in rows}
    peaks = dict.fromkeys(rows, 0)
    for number in range(runs + 1):
        for name, (command, environment) in rows.items():
            seconds, peak = run(command, environment)
            if number > 0:  # the first round only warms up
                times[name].append(seconds)
                peaks[name] = max(peaks[name], peak)
    own = statistics.median(times[next(iter(rows))])
    for name in rows:
        median = statistics.median(times[name])
        print(f"{name:34} {median * 1000:9.1f} ms {median / own:7.2f} x {peaks[name] / 1024:8.1f} MiB")


def environment_for(home, **folders):
    base = {"PATH": os.environ["PATH"], "HOME": str(home), "LC_ALL": "C",
            "BRIGHTSWEEP_SYSTEM_ROOT": str(home / "system")}
    base.update({key: str(value) for key, value in folders.items()})
    return base


def main():
    binaries = pathlib.Path(sys.argv[1]).resolve()
    runs = int(sys.argv[2]) if len(sys.argv) > 2 else 7
    cli = str(binaries / "brightsweep-cli")
    make = str(binaries / "bench_make_tree")
    top = pathlib.Path(tempfile.mkdtemp(prefix="brightsweep-bench-"))
    try:
        home = top / "home"
        home.mkdir()
        tree = top / "caches" / "item"
        tree.parent.mkdir()
        subprocess.run([make, str(tree), str(DIRECTORIES), str(FILES), str(SEED)], check=True)
        one = environment_for(home, XDG_CACHE_HOME=top / "caches")
        rows = {"brightsweep-cli scan, one item": ([cli, "--quiet", "scan", "--category", "1"], one),
                "du -s --apparent-size": (["du", "-s", "--apparent-size", str(tree)], one)}
        if shutil.which("gdu"):
            rows["gdu -n -p"] = (["gdu", "-n", "-p", str(tree)], one)
        compare(rows, runs)

        # The same amount again, spread over the folders of the six categories.
        spread = top / "spread"
        parts = {"cache": 4, "Downloads": 2, "share/Trash/files": 1, "state/log": 1,
                 "system/var/cache/man": 1, "system/var/log/apt": 1}
        for part, tenths in parts.items():
            (spread / part).mkdir(parents=True)
            for number in range(4):
                item = spread / part / f"item{number}"
                subprocess.run([make, str(item), str(DIRECTORIES * tenths // 40),
                                str(FILES * tenths // 40), str(SEED + number)], check=True)
        (home / "config").mkdir()
        (home / "config/user-dirs.dirs").write_text(f'XDG_DOWNLOAD_DIR="{spread}/Downloads"\n')
        six = environment_for(home, XDG_CACHE_HOME=spread / "cache", XDG_DATA_HOME=spread / "share",
                              XDG_STATE_HOME=spread / "state", XDG_CONFIG_HOME=home / "config",
                              BRIGHTSWEEP_SYSTEM_ROOT=spread / "system")
        print()
        compare({"six categories": ([cli, "--quiet", "scan"], six),
                 "their folders in one go": ([cli, "--quiet", "scan", "--category", "1"],
                                             environment_for(home, XDG_CACHE_HOME=spread))}, runs)
    finally:
        shutil.rmtree(top)


if __name__ == "__main__":
    main()
