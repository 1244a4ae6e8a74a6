#!/usr/bin/env python3
"""clang-tidy over the portable sources of a native build folder. A source is looked at again only when it, a header of
the project that it includes, or the rules have changed.

tidy.py BUILD_FOLDER
"""
import hashlib
import json
import os
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
SKIPPED = ("tests", "bench", "fuzz")  # built from macros of their libraries


def dependencies(build):
    """Object file to the files that it was made from, as the build tool has recorded them."""
    result, target = {}, None
    for line in subprocess.run(["ninja", "-C", build, "-t", "deps"], capture_output=True, text=True,
                               check=True).stdout.splitlines():
        if line.startswith(" "):
            result[target].append(line.strip())
        elif line:
            target = line.split(":")[0]
            result[target] = []
    return result


def fingerprint(files):
    """Changes with the content of any of these files and with the rules."""
    digest = hashlib.sha256((ROOT / ".clang-tidy").read_bytes())
    for name in sorted(files):
        digest.update(Path(name).read_bytes())
    return digest.hexdigest()


def check(build, source):
    """Runs clang-tidy on one source; its complaints, or nothing."""
    # The build was made with another compiler, whose warnings clang need not know.
    run = subprocess.run(["clang-tidy", "-p", str(build), "--quiet", "--extra-arg=-Wno-unknown-warning-option",
                          str(source)], capture_output=True, text=True, check=False)
    return run.stdout + run.stderr if run.returncode else ""


def main():
    build = Path(sys.argv[1]).resolve()
    stamps = build / "tidy"
    stamps.mkdir(exist_ok=True)
    made_from = dependencies(build)
    due = {}
    for entry in json.loads((build / "compile_commands.json").read_text()):
        source = Path(entry["file"])
        made = entry["command"].split(" -o ")[1].split()[0]
        if source.relative_to(ROOT).parts[0] in SKIPPED or made not in made_from:
            continue
        ours = {str(source)} | {str((build / name).resolve()) for name in made_from[made]
                                if (build / name).resolve().is_relative_to(ROOT)}
        stamp = stamps / str(source.relative_to(ROOT)).replace("/", "_")
        mark = fingerprint(ours)
        if not stamp.exists() or stamp.read_text() != mark:
            due[source] = (stamp, mark)
    faults = 0
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        for source, complaints in zip(due, pool.map(lambda name: check(build, name), due)):
            print(f"clang-tidy {source.relative_to(ROOT)}{': FAILED' if complaints else ''}\n{complaints}", end="",
                  flush=True)
            if complaints:
                faults += 1
            else:
                due[source][0].write_text(due[source][1])
    print(f"clang-tidy: {len(due)} sources looked at, {faults} with complaints; the others unchanged since they passed")
    sys.exit(1 if faults else 0)


if __name__ == "__main__":
    main()
