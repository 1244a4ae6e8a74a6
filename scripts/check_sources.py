#!/usr/bin/env python3
"""Checks what no compiler checks: that each folder includes only what it may know, that Windows stays in its corner,
that the sources are formatted, and that every folder of the program is covered by these rules."""
import re
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent

# Who may include whom; each may include itself and the standard library.
KNOWS = {
    "util": set(),
    "platform": {"util"},
    "config": {"util", "platform"},
    "diag": {"util", "platform", "config"},
    "tapi": {"util", "platform"},
    "app": {"util", "platform", "config", "diag", "tapi"},
    "sim": {"util", "platform"},
    "platform/win32": {"util", "platform", "config", "diag", "tapi", "app"},
}
FREE = ("tests", "bench", "fuzz")  # know everything
WINDOWS_ONLY = re.compile(r"platform/win32/|sim/suite/|sim/win32/")
WINDOWS = re.compile(r"^\s*#\s*include\s*<(windows|winsock2?|tapi|dde|ddeml|commctrl|shlobj|shellapi)\.h>|\b_WIN32\b")
INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"')


def layer_of(path):
    """The folder of KNOWS that a path relative to the root belongs to, or nothing."""
    return next((layer for layer in sorted(KNOWS, key=len, reverse=True) if path.startswith(layer + "/")), None)


def faults_in(path):
    """Complaints about the includes of one source."""
    layer = layer_of(path)
    if layer is None:
        if not path.startswith(FREE):
            yield f"{path}: belongs to no layer that the rules know"
        return
    for number, line in enumerate((ROOT / path).read_text(encoding="utf-8").splitlines(), 1):
        if WINDOWS.search(line) and not WINDOWS_ONLY.match(path):
            yield f"{path}:{number}: Windows outside of its corner: {line.strip()}"
        include = INCLUDE.match(line)
        target = layer_of(include[1]) if include else None
        if target not in (None, layer) and target not in KNOWS[layer]:
            yield f"{path}:{number}: {layer} must not know {target}: {line.strip()}"


def main():
    listed = subprocess.run(["git", "ls-files", "-co", "--exclude-standard", "*.cpp", "*.h"], cwd=ROOT,
                            capture_output=True, text=True, check=True).stdout.split()
    sources = [name for name in listed if (ROOT / name).exists()]
    faults = [fault for name in sources for fault in faults_in(name)]
    print("\n".join(faults), end="\n" if faults else "")
    formatted = subprocess.run(["clang-format", "--dry-run", "--Werror", *sources], cwd=ROOT, check=False)
    print(f"{len(sources)} sources: {len(faults)} wrong includes,",
          "all formatted" if formatted.returncode == 0 else "NOT all formatted")
    sys.exit(1 if faults or formatted.returncode else 0)


if __name__ == "__main__":
    main()
