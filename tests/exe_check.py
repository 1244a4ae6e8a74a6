#!/usr/bin/env python3
"""Reads the program as it ships and holds it against what Windows offers for its protection.

exe_check.py EXE SYMBOLS SOURCE_FOLDER     SYMBOLS is the file with the names that were stripped from the exe
"""
import struct
import sys
from pathlib import Path

# What every Windows since 7 has in its system folder, and a program with any window loads by itself. A library of the
# compiler's would not be there; the system's others are loaded when they are needed, and cost no start before.
SYSTEM_LIBRARIES = {"advapi32.dll", "gdi32.dll", "kernel32.dll", "msvcrt.dll", "user32.dll"}
LARGEST = 560 * 1024
# Far fewer would mean that only some sources are compiled with guards.
FEWEST_STACK_GUARDS = 100

# Names and values of the PE format ("PE Format" in the documentation of the Windows platform).
PE32_PLUS = 0x20B
RELOCATIONS_STRIPPED, GUI, FUNCTION = 0x0001, 2, 0x20
HIGH_ENTROPY_VA, DYNAMIC_BASE, NX_COMPAT = 0x0020, 0x0040, 0x0100
EXPORTS, IMPORTS, RESOURCES, RELOCATIONS = 0, 1, 2, 5


class Exe:
    """The parts of a PE file that the checks look at."""

    def __init__(self, data):
        self.data = data
        pe = self.number("I", 0x3C)
        if data[pe:pe + 4] != b"PE\0\0":
            raise ValueError("not a PE file")
        sections, self.time = self.number("H", pe + 6), self.number("I", pe + 8)
        self.symbols, self.traits = self.number("I", pe + 16), self.number("H", pe + 22)
        head = pe + 24
        self.wide = self.number("H", head) == PE32_PLUS
        self.system, self.subsystem_version = (struct.unpack_from("<HH", data, head + at) for at in (40, 48))
        self.subsystem, self.protection = self.number("H", head + 68), self.number("H", head + 70)
        table = head + (112 if self.wide else 96)
        self.folders = [struct.unpack_from("<II", data, table + 8 * index) for index in range(16)]
        self.symbol_table = self.number("I", pe + 12)
        self.names = self.symbol_table + 18 * self.symbols
        first = head + self.number("H", pe + 20)
        self.sections = {}
        for at in range(first, first + 40 * sections, 40):
            name = self.zero_ended(at, at + 8)
            # A long name stands among those of the symbols.
            self.sections[self.zero_ended(self.names + int(name[1:])) if name[:1] == b"/" else name] = \
                struct.unpack_from("<IIII", data, at + 8)

    def number(self, kind, at):
        return struct.unpack_from("<" + kind, self.data, at)[0]

    def zero_ended(self, at, end=None):
        return self.data[at:end].split(b"\0", 1)[0] if end else self.data[at:self.data.index(b"\0", at)]

    def place(self, address):
        """Where in the file a part of the loaded image lies."""
        for size, start, stored, place in self.sections.values():
            if start <= address < start + min(size, stored):
                return place + address - start
        raise ValueError(f"address {address:#x} is in no section")

    def imports(self):
        """The libraries that the system loads along with the program."""
        at = self.place(self.folders[IMPORTS][0])
        while self.number("I", at + 12):
            yield self.zero_ended(self.place(self.number("I", at + 12))).decode().lower()
            at += 20

    def function(self, name):
        """The address of a function, by its name without leading underscores; of none when it has no such function."""
        for at in range(self.symbol_table, self.names, 18):
            short = self.number("I", at) != 0
            found = self.zero_ended(at, at + 8) if short else self.zero_ended(self.names + self.number("I", at + 4))
            if found.lstrip(b"_") == name and self.data[at + 14] == FUNCTION:
                return self.number("I", at + 8) + self.sections[b".text"][1]
        return None

    def calls_of(self, address):
        """How often the code calls this function: E8 and the distance from the next instruction."""
        size, start, stored, place = self.sections[b".text"]
        code = self.data[place:place + min(size, stored)]
        return sum(struct.unpack_from("<i", code, at + 1)[0] + start + at + 5 == address
                   for at in range(len(code) - 5) if code[at] == 0xE8)

    def text(self, text):
        """Whether this text occurs, in bytes or as Windows spells it."""
        return text.encode() in self.data or text.encode("utf-16-le") in self.data


def faults(exe, symbols, source):
    """What is wrong with it, one line each."""
    guards = exe.calls_of(symbols.function(b"stack_chk_fail"))
    foreign = set(exe.imports()) - SYSTEM_LIBRARIES
    paths = [path for path in (source, "/build/", "/home/", "/tmp/", "/root/") if exe.text(path)]
    times = {"file": exe.time, "resources": exe.number("I", exe.place(exe.folders[RESOURCES][0]) + 4)}
    checks = [
        (not foreign, f"loads {', '.join(sorted(foreign))}, which is not there or not needed at the start"),
        (exe.protection & DYNAMIC_BASE, "no DYNAMIC_BASE: always at the same address"),
        (exe.protection & HIGH_ENTROPY_VA or not exe.wide, "no HIGH_ENTROPY_VA: few addresses to choose from"),
        (exe.protection & NX_COMPAT, "no NX_COMPAT: data may run as code"),
        (not exe.traits & RELOCATIONS_STRIPPED and b".reloc" in exe.sections and exe.folders[RELOCATIONS][1] > 8,
         "no relocations: cannot be moved to another address"),
        (exe.subsystem == GUI, f"subsystem {exe.subsystem}: a console opens beside the window"),
        (exe.subsystem_version == (6, 1), f"subsystem version {exe.subsystem_version}, not that of Windows 7"),
        (exe.system == (6, 1), f"system version {exe.system}, not that of Windows 7"),
        (guards >= FEWEST_STACK_GUARDS, f"only {guards} functions guard their stack"),
        (not any(times.values()), f"bears a time: {times}"),
        (not paths, f"bears the path of a build: {', '.join(paths)}"),
        (not exe.symbols and not any(name.startswith(b".debug") for name in exe.sections), "not stripped"),
        (not exe.folders[EXPORTS][1], "exports functions, as a library would"),
        (len(exe.data) <= LARGEST, f"{len(exe.data)} bytes, more than {LARGEST}"),
    ]
    return [fault for good, fault in checks if not good]


def main():
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    exe, symbols = (Exe(Path(name).read_bytes()) for name in sys.argv[1:3])
    found = faults(exe, symbols, sys.argv[3])
    print("\n".join(found) or f"{sys.argv[1]}: {64 if exe.wide else 32} bits, {len(exe.data)} bytes, as it should be")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
