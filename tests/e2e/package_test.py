#!/usr/bin/env python3
"""What users are given, put to use: the ZIP, the installer, and the example of a main program that drives both."""
import hashlib
import os
import shutil
import zipfile
from pathlib import Path

from conversations import CALL, HANG_UP, IDLE, SETTINGS, STARTED, WHOLE_CALL
from dialer_session import wait_until, windows_path
from stories import CALL_UP, FAR_END_HANGS_UP, case, dialer, equal, expect_clean_end, run

BUILD = Path(os.environ.get("FONKLAV_BUILD", "."))
OURS = ["FonklavTAPI-README.txt", "FonklavTAPI-uninstall.exe", "FonklavTAPI.exe", "Rufmonpaths.ini.sample",
        "Rufmonspec.ini.sample"]


def package(pattern):
    """The package of this build."""
    found = sorted(BUILD.glob(f"FonklavTAPI-*-{pattern}"))
    assert len(found) == 1, f"not one {pattern}: {found}"
    return found[0]


def dial(session, folder, seconds, story):
    """Dials with the program of this folder, by the example."""
    session.program = folder / "FonklavTAPI.exe"
    equal(session.play_example(SETTINGS, "0301234567", *seconds), (0, [*STARTED, *story]), session.read("sim.log"))
    session.expected = []
    expect_clean_end(session)


@case("zip-in-a-folder-with-blanks-and-umlauts")
def unpacked(name):
    """Everything is in it as its checksums say, its samples change nothing, and it dials."""
    session = dialer(name, FAR_END_HANGS_UP)
    folder = session.folder / "Größe und  Übermut"
    with zipfile.ZipFile(package("win*.zip")) as archive:
        archive.extractall(folder)
        names = archive.namelist()
    sums = dict(reversed(line.split(" *")) for line in (folder / "SHA256SUMS").read_text().splitlines())
    equal(sums, {file: hashlib.sha256((folder / file).read_bytes()).hexdigest() for file in names[:-1]})
    assert {"FonklavTAPI.exe", "README.txt", *OURS[3:], "base/language_49.ini"} < {*names}, names
    equal((folder / "FonklavTAPI.exe").read_bytes(), (BUILD / "FonklavTAPI.exe").read_bytes())
    sample = (folder / "Rufmonpaths.ini.sample").read_text()
    (folder / "Rufmonpaths.ini").write_text(sample.replace("Data=1", f"Data={windows_path(session.folder)}"))
    shutil.copy(folder / "Rufmonspec.ini.sample", folder / "Rufmonspec.ini")
    dial(session, folder, [], WHOLE_CALL)
    equal(session.read("log/debug.log") + session.read("log/trace.log"), [])


def install(session, folder):
    """Installs without questions; all files of the folder then."""
    session.wine(package("win64-setup.exe"), "/S", f"/D={windows_path(folder)}")
    return tree(folder)


def uninstall(session, folder):
    """Uninstalls without questions; what is left. The program that was called ends before the one that works."""
    session.wine(folder / "FonklavTAPI-uninstall.exe", "/S")
    wait_until("the uninstaller has gone", lambda: not (folder / "FonklavTAPI-uninstall.exe").exists(), 20)
    return tree(folder)


def tree(folder):
    """The files below a folder, with what is in them."""
    return {path.relative_to(folder).as_posix(): path.read_bytes() for path in folder.rglob("*") if path.is_file()}


@case("installer-in-the-folder-of-the-suite")
def installed(name):
    """It adds what is missing and takes back what is the dialer's alone; in between it dials."""
    session = dialer(name, CALL_UP)
    folder = session.folder / "Suite"
    (folder / "base").mkdir(parents=True)
    for shared, text in {"Rufmonpaths.ini": f"[Paths]\nProgramData={windows_path(session.folder)}\n",
                         "Rufmonspec.ini": "[Debug]\nLogTAPI=0\n", "base/language_49.ini": "[Data]\nlanguage=ours\n",
                         "README.txt": "of the suite"}.items():
        session.write(f"Suite/{shared}", text)
    before, languages = tree(folder), tree(BUILD / "base")
    after = install(session, folder)
    equal(sorted(after), sorted({*before, *OURS, *(f"base/{file}" for file in languages)}))
    equal({file: after[file] for file in before}, before)
    equal(after["base/language_44.ini"], languages["language_44.ini"])
    dial(session, folder, ["1"], [*CALL, *HANG_UP, "btnCall|1|cmdHangUp_Click", "anzlog|Call Dropped", *IDLE])
    equal(uninstall(session, folder), {file: data for file, data in after.items() if file not in OURS})
    equal(session.read("data/sett_TAPI.ini"), SETTINGS.splitlines())


@case("installer-leaves-a-dialer-at-work")
def in_use(name):
    """Neither a newer version nor the uninstaller touches anything while the program runs, and both say so."""
    session = dialer(name)
    before = install(session, session.folder)
    with session:
        session.start(SETTINGS)
        session.wait("line|")
        into = windows_path(session.folder)
        again = session.wine(package("win64-setup.exe"), "/S", f"/D={into}")
        removed = session.wine(session.folder / "FonklavTAPI-uninstall.exe", "/S", f"_?={into}")
        equal((again.returncode, removed.returncode), (2, 2))
        equal({file: tree(session.folder).get(file) for file in OURS}, {file: before[file] for file in OURS})


@case("installer-makes-the-data-root")
def data_roots(name):
    """The folders for settings and logs, where the program looks for them, and nowhere else. Not the users' right to
    change them, which Wine does not keep."""
    session = dialer(name)
    folder, common, other = session.folder / "Suite", session.env.drive_c("ProgramData/Rufmon"), session.folder / "Root"
    folder.mkdir()
    for value, root in {"": common, "1": common, "0": folder, windows_path(other): other}.items():
        session.write("Suite/Rufmonpaths.ini", f"[Paths]\nProgramData={value}\n" if value else "")
        install(session, folder)
        made = [str(at) for at in (common, folder, other) if (at / "data").is_dir() and (at / "log").is_dir()]
        equal(made, [str(root)], value)
        uninstall(session, folder)
        assert (root / "log").is_dir(), f"the data of {value} have gone"
        shutil.rmtree(root / "data")
        shutil.rmtree(root / "log")


if __name__ == "__main__":
    run()
