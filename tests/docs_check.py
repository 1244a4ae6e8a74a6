#!/usr/bin/env python3
"""Checks that the tables of the docs name what their code has, no more and no less, and that pages name files that
exist."""
import re
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
FILES = subprocess.run(["git", "ls-files", "-co", "--exclude-standard"], cwd=ROOT, capture_output=True, text=True,
                       check=True).stdout.splitlines()
TREE = ""  # as a source: the names of all files
LINE_ERRORS = (["tapi/CvbTAPILine_Texts.cpp"], r'(?:^ {9,}|kLineErrors\{|kUnknownError = )"([^"]+)"')
FOLDERS = "app|cmake|config|diag|docs|examples|fuzz|lang|packaging|platform|scripts|sim|tapi|tests|util|window"
PATHS = rf"`((?:{FOLDERS})/(?!\S+\.exe)[\w./-]*\w)`"

# Page, heading (empty: all of the page), column, what of a cell counts; sources, what of them counts; what only they
# have.
MIRRORS = [
    ("docs/user-guide.de.md", "Was die Leitung meldet", 0, "`(.+)`", *LINE_ERRORS),
    ("docs/user-guide.en.md", "What the line tells", 0, "`(.+)`", *LINE_ERRORS),
    ("docs/settings.md", r"`\data\sett_TAPI.ini`", 1, r"`(\w+)`", ["app/modSaveSetting.cpp"],
     r'(?:position\(|kDial, |kGeneral, )"(\w+)"'),
    ("docs/settings.md", "`Rufmonpaths.ini`", 0, r"`(\w+)`", ["config/modDeclareAll.cpp"], r'kPaths, "(\w+)"'),
    ("docs/settings.md", "`Rufmonspec.ini`", 0, r"`(\w+)`", ["config/modDeclareAll.cpp"],
     r'(?:DebugRow\{|kDebug, )"(\w+)"'),
    ("docs/logs.md", "Logs", 0, "`(.+)`",
     ["diag/clsErrorHandling.cpp", "diag/clsErrorHandling_Trace.cpp", "config/modLanguage.cpp"], r'log\\\\(\w+\.log)"'),
    ("docs/logs.md", "error.log", 0, r"^(\d+)$", ["util/RunTimeError.h"], r"^  \w+ = (\d+),",
     "282", "401"),  # the one goes to debug.log, the other nowhere
    ("docs/logs.md", "error.log", 1, r"^([A-Z].*?)(?: \(.*)?$", ["util/RunTimeError.cpp"], r'ErrorNumber::\w+, "(.+)"',
     "No foreign application responded to a DDE initiate"),
    ("docs/protocol.md", "Starting the dialer", 0, r"`(/\w+)`", ["app/fMain_Startup.cpp"], r'argument == "(.+?)"'),
    ("docs/protocol.md", "Commands", 0, r"`(\w+)\|?([a-z]+)?", ["app/Protocol.cpp"],
     r'CommandRow\{"(\w+)", (?:"(\w+)")?'),
    ("docs/protocol.md", "Reports", 0, r"`(\w+\|(?:[a-z]+)?)", ["app/Protocol.cpp"],
     r'DDEexecute\((?:std::string\()?"(\w+\|[a-z]*)'),
    ("docs/building.md", "Building and testing", 0, "`(.+)`", ["CMakePresets.json"],
     r'"name": "(\w+)",\s+"inherits"'),
    ("docs/building.md", "Playing the main program by hand", 0, r"`([\w-]+)",
     ["sim/suite/Script.cpp", "sim/suite/Server.cpp"],
     r'(?:commands_|acts)\["([\w-]+)"|\{"([\w-]+)",\s+[{\d]|name == "([\w-]+)"'),
    ("docs/language-files.md", "Language files", 0, r"^(\d+)$", [TREE], r"^lang/language_(\d+)\.ini$"),
    ("docs/reliability.md", "Fuzzing", 0, "`(.+)`", [TREE], r"^fuzz/(\w+)_fuzz\.cpp$"),
    ("docs/architecture.md", "The layers", 0, r"`(\w+)/`", [TREE], r"^([a-z]+)/", "cmake", "docs"),
    ("sim/README.md", "Scenarios", 0, r"^`(\w+)", ["sim/Scenario.cpp"], r'\{"(\w+)", (?:Set|Add)|kRepeat = "(\w+) "'),
    ("sim/README.md", "The stand-in library", 0, r"`(\w+)`", ["sim/tapi32/StandIn.cpp"], r'Environment\("(\w+)"'),
]


def text_of(source):
    return "\n".join(FILES) if source == TREE else (ROOT / source).read_text(encoding="utf-8")


def words(pattern, text):
    """What the groups of a pattern find in a text."""
    return {word for match in re.finditer(pattern, text, re.M) for word in match.groups() if word}


def cells(page, heading, column):
    """The column of the tables between a heading that begins so and the next."""
    section = re.split(r"^#+ ", text_of(page), flags=re.M)
    lines = next(part for part in section if part.startswith(heading)).splitlines()
    rows = [re.split(r"(?<!\\)\|", line)[1:] for line in lines if line.startswith("|")]
    body = [row for row, after in zip(rows, [*rows[1:], [""]]) if "--" not in (row[0][:2], after[0][:2])]
    return "\n".join(row[column].replace("\\|", "|").strip() for row in body)


def main() -> int:
    faults = []
    for page, heading, column, told, sources, had, *untold in MIRRORS:
        in_page = words(told, cells(page, heading, column))
        in_code = words(had, "\n".join(map(text_of, sources)))
        for difference in sorted(in_page ^ (in_code - set(untold))) or ([] if in_page else ["the table"]):
            where = "the page" if difference in in_page else "the code"
            faults.append(f"{page}, {heading}: {difference!r} is in {where} alone")
    for page in (name for name in FILES if name.endswith(".md")):
        text = text_of(page)
        named = [(ROOT / page).parent / link for link in re.findall(r"\]\(([^)#:\s]+)(?:#[^)]*)?\)", text)]
        named += [ROOT / path for path in re.findall(PATHS, text)]
        faults += [f"{page} names {path}, which does not exist" for path in named if not path.exists()]
    print("\n".join(faults) or f"{len(MIRRORS)} tables are as their code")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
