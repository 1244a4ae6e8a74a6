#!/usr/bin/env python3
"""Checks that the folders know only whom they may know, that Windows stays in its own folders, and that procedures call
themselves in the logs what they are called."""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent

# Who may include whom. A folder always knows itself.
MAY_INCLUDE = {
    "util": set(),
    "platform": {"util"},
    "config": {"util", "platform"},
    "tapi": {"util", "platform"},
    "diag": {"util", "platform", "config"},
    "app": {"util", "platform", "config", "diag", "tapi"},
    "platform/win32": {"util", "platform"},
    "window": {"util", "platform", "config", "diag", "tapi", "app", "platform/win32"},
    "sim": {"util", "platform", "platform/win32"},
}
WINDOWS_FOLDERS = ("platform/win32/", "window/", "sim/tapi32/", "sim/suite/", "sim/check/")
GENERATED = {"Version.h"}
PROCEDURES = ("util", "config", "tapi", "diag", "app")
# Procedures in two pieces, and the end of an object.
OTHER_NAMES = {"clsFiles.MakeFileOf": "clsFiles.MakeFile", "CvbTAPILine.Release": "CvbTAPILine.Class_Terminate",
               "CvbTAPILine.~CvbTAPILine": "CvbTAPILine.Class_Terminate"}


def layer_of(path: str) -> str:
    return "platform/win32" if path.startswith("platform/win32/") else path.split("/")[0]


def faults_in(path: pathlib.Path):
    name = path.relative_to(ROOT).as_posix()
    layer = layer_of(name)
    function = ""
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
        quoted = re.match(r'\s*#\s*include\s+"([^"]+)"', line)
        if quoted and quoted[1] not in GENERATED:
            target = layer_of(quoted[1])
            if target != layer and target not in MAY_INCLUDE[layer]:
                yield f"{name}:{number}: {layer} may not know {target}"
        windows = re.match(r"\s*#\s*include\s+<(windows|tapi|ddeml?|commctrl)\.h>", line) or "_WIN32" in line
        if windows and not name.startswith(WINDOWS_FOLDERS):
            yield f"{name}:{number}: Windows outside its folders: {line.strip()}"
        if definition := re.match(r"(?!\s).*?\b(\w+)::(~?\w+)\(", line):
            function = f"{definition[1]}.{definition[2]}"
        for logged in re.findall(r'(?<!include )"(\w+\.\w+)"', line):
            if layer in PROCEDURES and logged != OTHER_NAMES.get(function, function):
                yield f"{name}:{number}: {function} calls itself {logged}"


def main() -> int:
    files = [path for layer in MAY_INCLUDE for path in (ROOT / layer).rglob("*") if path.suffix in (".h", ".cpp")]
    if len(files) < 20:
        print(f"only {len(files)} source files found: wrong folder?")
        return 1
    faults = sorted({fault for path in files for fault in faults_in(path)})
    print("\n".join(faults) or f"{len(files)} files keep to their layers")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
