#!/usr/bin/env python3
"""The Windows check, unpacked and started as its user does: all its parts, the stories of a lost partner, and one whose
dialer is still there at its end."""
import os
import shutil
import subprocess
from pathlib import Path

from stories import equal
from wine_env import WineEnv

BUILD = Path(os.environ["FONKLAV_BUILD"])
FOLDER = BUILD / "e2e/für später"

shutil.rmtree(FOLDER, ignore_errors=True)
shutil.unpack_archive(next(BUILD.glob("*-windows-check.zip")), FOLDER)
KIT = next(FOLDER.iterdir())
# One story is spoilt, in the half that looks what has come of it: the report has to say so.
SPOILT = KIT / "stories/line/link.partner-exits-before-a-call"
(SPOILT / "2.txt").write_text("said 1 something that nobody says\n")
# And one is played along whose dialer is still there at its end.
shutil.copytree(KIT / "stories/line/dial.busy", KIT / "stories/line/link.partner-of-a-busy-line")
subprocess.run(["wine", "cmd", "/c", "check.cmd", "link.partner-*"], cwd=KIT, stdin=subprocess.DEVNULL, check=False,
               env=WineEnv(BUILD).environ(WINEDLLOVERRIDES="mscoree,mshtml=;tapi32=b"))
REPORT = (KIT / "report.txt").read_text(encoding="cp1252")
assert "anzlog|Leerlauf" in (KIT / "work/line/link.partner-of-a-busy-line/conversation.txt").read_text(encoding="cp1252")
TOLD = [f"{kind}: {story.name}" for kind in ("product", "line")
        for story in sorted((KIT / "stories" / kind).glob("link.partner-*"))]
assert len(TOLD) > 8 and "cmd|call" not in "".join(
    part.read_text(encoding="cp1252") for part in (KIT / "stories/product").glob("*/*.txt"))
VERDICTS = [line.strip() for line in REPORT.splitlines() if line.startswith(("PASS", "FAIL"))]
equal(VERDICTS, [f"{'FAIL' if SPOILT.name in name and 'line:' in name else 'PASS'}  {name}"
                 for name in ("unit tests", *TOLD)], REPORT)
for part in ("which is Wine", "lineInitializeEx: result 0", "[  PASSED  ]", "LEFT OUT", " 1 failed", "12. "):
    assert part in REPORT, f"{part!r} is not in the report:\n{REPORT}"
