#!/usr/bin/env python3
"""Packs files with their checksums. The same files make the same bytes: no time and no user gets in.

make_zip.py ZIP FILE... FOLDER FILE...     the files behind a name without a slash lie in that folder
"""
import hashlib
import sys
from pathlib import Path
from zipfile import ZIP_DEFLATED, ZipFile, ZipInfo


def main():
    files, folder = {}, ""
    for argument in sys.argv[2:]:
        if "/" in argument:
            files[folder + Path(argument).name] = Path(argument).read_bytes()
        else:
            folder = f"{argument}/"
    sums = (f"{hashlib.sha256(data).hexdigest()} *{name}\n" for name, data in files.items())
    files["SHA256SUMS"] = "".join(sums).encode()
    with ZipFile(sys.argv[1], "w") as archive:
        for name, data in files.items():
            archive.writestr(ZipInfo(name), data, ZIP_DEFLATED, 9)


if __name__ == "__main__":
    main()
