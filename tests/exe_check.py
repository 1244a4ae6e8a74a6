#!/usr/bin/env python3
"""Reads the program as it ships and holds it against what Windows offers for its protection.

exe_check.py EXE SYMBOLS SOURCE_FOLDER     SYMBOLS is the file with the names that were stripped from the exe
"""
import os
import re
import subprocess
import sys
from pathlib import Path

# What every Windows since 7 has in its system folder, and a program with any window loads by itself. A library of the
# compiler's would not be there; the system's others are loaded when they are needed, and cost no start before.
SYSTEM_LIBRARIES = {"advapi32.dll", "gdi32.dll", "kernel32.dll", "msvcrt.dll", "user32.dll"}
LARGEST = 560 * 1024
# Far fewer would mean that only some sources are compiled with guards.
FEWEST_STACK_GUARDS = 100


def told(tool, *arguments):
    """What a tool of the compiler's, which reads programs of both widths, says of a file."""
    return subprocess.run([f"x86_64-w64-mingw32-{tool}", *arguments], capture_output=True, text=True,
                          check=True, env={**os.environ, "TZ": "UTC"}).stdout


def faults(exe, symbols, source):
    """What is wrong with it, one line each."""
    data, head = Path(exe).read_bytes(), told("objdump", "-x", exe)
    fields = dict(re.findall(r"^(Major\w+|Minor\w+|Subsystem|Magic|Time/Date)\s+(.+?)$", head, re.M))
    folders = {name: int(size, 16) for size, name in re.findall(r"^Entry \w+ \w+ (\w+) (\w+ \w+)", head, re.M)}
    versions = {kind: (fields[f"Major{kind}Version"], fields[f"Minor{kind}Version"])
                for kind in ("Subsystem", "OSystem")}
    (fail,) = re.findall(r"^0*(\w+) T _*stack_chk_fail$", told("nm", symbols), re.M)
    guards = len(re.findall(rf"\bcall +0x0*{fail}$", told("objdump", "-d", exe), re.M))
    foreign = {name.lower() for name in re.findall(r"DLL Name: (.+)", head)} - SYSTEM_LIBRARIES
    paths = [path for path in (source, "/build/", "/home/", "/tmp/", "/root/")
             if path.encode() in data or path.encode("utf-16-le") in data]
    times = {fields["Time/Date"], *re.findall(r"Table: Char: \d+, (Time: \w+)", head)}
    checks = [
        (not foreign, f"loads {', '.join(sorted(foreign))}, which is not there or not needed at the start"),
        ("\tDYNAMIC_BASE" in head, "no DYNAMIC_BASE: always at the same address"),
        ("\tHIGH_ENTROPY_VA" in head or "(PE32+)" not in fields["Magic"],
         "no HIGH_ENTROPY_VA: few addresses to choose from"),
        ("\tNX_COMPAT" in head, "no NX_COMPAT: data may run as code"),
        ("\trelocations stripped" not in head and " .reloc " in head and folders["Base Relocation"] > 8,
         "no relocations: cannot be moved to another address"),
        ("(Windows GUI)" in fields["Subsystem"], f"subsystem {fields['Subsystem']}: a console opens beside the window"),
        (set(versions.values()) == {("6", "1")}, f"versions {versions}, not those of Windows 7"),
        (guards >= FEWEST_STACK_GUARDS, f"only {guards} functions guard their stack"),
        (times == {"Thu Jan  1 00:00:00 1970", "Time: 00000000"}, f"bears a time: {sorted(times)}"),
        (not paths, f"bears the path of a build: {', '.join(paths)}"),
        ("SYMBOL TABLE:\nno symbols" in head and " .debug" not in head, "not stripped"),
        (not folders["Export Directory"], "exports functions, as a library would"),
        (len(data) <= LARGEST, f"{len(data)} bytes, more than {LARGEST}"),
    ]
    return [fault for good, fault in checks if not good]


def main():
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    found = faults(*sys.argv[1:])
    print("\n".join(found) or f"{sys.argv[1]} is as it should be")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
