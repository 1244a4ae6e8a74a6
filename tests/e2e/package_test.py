#!/usr/bin/env python3
"""What users are given, put to use: the ZIP, the installer, and the example of a main program that dials with both."""
import hashlib
import os
import shutil
import zipfile
from pathlib import Path

from conversations import CALL, HANG_UP, IDLE, SETTINGS, STARTED, WHOLE_CALL
from dialer_session import CODE_PAGE, wait_until, windows_path
from stories import CALL_UP, FAR_END_HANGS_UP, case, dialer, equal, expect_clean_end, run

BUILD = Path(os.environ.get("FONKLAV_BUILD", "."))
OURS = ["FonklavTAPI-README.txt", "FonklavTAPI-uninstall.exe", "FonklavTAPI.exe", "Rufmonpaths.ini.sample",
        "Rufmonspec.ini.sample"]


def package(pattern):
    """The package of this build."""
    (found,) = BUILD.glob(f"FonklavTAPI-*-{pattern}")
    return found


def tree(folder):
    """The files below a folder, with what is in them."""
    return {path.relative_to(folder).as_posix(): path.read_bytes() for path in folder.rglob("*") if path.is_file()}


def install(session, folder):
    """Installs without questions; how that ended."""
    return session.wine(package("win64-setup.exe"), "/S", f"/D={windows_path(folder)}").returncode


def uninstall(session, folder, *more):
    """Uninstalls without questions; how that ended. Without more, a copy of the uninstaller goes on by itself."""
    return session.wine(folder / OURS[1], "/S", *more).returncode


def dial(session, folder, seconds, story):
    """Dials with the program of this folder, by the example."""
    session.program = folder / "FonklavTAPI.exe"
    session.write("data/sett_TAPI.ini", SETTINGS)
    example = session.wine(BUILD / "examples/main-program.exe", windows_path(session.program), "0301234567", *seconds)
    equal((example.returncode, example.stdout.decode(CODE_PAGE).splitlines()), (0, [*STARTED, *story]))
    expect_clean_end(session)


@case("zip-in-a-folder-with-blanks-and-umlauts")
def unpacked(name):
    """Everything is in it as its checksums say, its switches are off, and it dials."""
    session = dialer(name, FAR_END_HANGS_UP)
    folder = session.folder / "Größe und  Übermut"
    with zipfile.ZipFile(package("win[36]*.zip")) as archive:
        archive.extractall(folder)
    files = tree(folder)
    sums = (line.split(" *") for line in files.pop("SHA256SUMS").decode().splitlines())
    equal({file: given for given, file in sums}, {file: hashlib.sha256(files[file]).hexdigest() for file in files})
    equal(sorted(files), sorted([*OURS[2:], "README.txt", *(f"base/{file}" for file in tree(BUILD / "base"))]))
    paths = files["Rufmonpaths.ini.sample"].decode().replace("Data=1", f"Data={windows_path(session.folder)}")
    (folder / "Rufmonpaths.ini").write_text(paths, newline="")
    shutil.copy(folder / "Rufmonspec.ini.sample", folder / "Rufmonspec.ini")
    dial(session, folder, [], WHOLE_CALL)
    equal(session.read("log/debug.log") + session.read("log/trace.log"), [])


@case("installer-in-the-folder-of-the-suite")
def installed(name):
    """It adds what is missing, dials, is not taken away at work, and takes back what is the dialer's alone."""
    session = dialer(name, CALL_UP)
    folder = session.folder / "Suite"
    (folder / "base").mkdir(parents=True)
    for shared in ("Rufmonspec.ini", "base/language_49.ini", "README.txt", "FonklavCAPI.exe"):
        session.write(f"Suite/{shared}", "of the suite")
    shutil.copy(session.folder / "Rufmonpaths.ini", folder)
    before, languages = tree(folder), {f"base/{file}": data for file, data in tree(BUILD / "base").items()}
    equal(install(session, folder), 0)
    after = tree(folder)
    equal(sorted(after), sorted({*before, *languages, *OURS}))
    equal({file: after[file] for file in {*languages, *before}}, {**languages, **before})
    dial(session, folder, ["1"], [*CALL, *HANG_UP, "btnCall|1|cmdHangUp_Click", "anzlog|Call Dropped", *IDLE])
    with session:
        session.start(SETTINGS)
        session.wait("line|")
        equal((install(session, folder), uninstall(session, folder, f"_?={windows_path(folder)}")), (2, 2))
        equal(tree(folder), after)
    uninstall(session, folder)
    wait_until("the uninstaller has gone", lambda: not (folder / OURS[1]).exists(), 20)
    equal(tree(folder), {file: after[file] for file in after if file not in OURS})
    equal(session.read("data/sett_TAPI.ini"), SETTINGS.splitlines())


@case("installer-makes-the-data-root")
def data_roots(name):
    """The folders for settings and logs, where the program looks for them, and nowhere else. Not the users' right to
    change them, which Wine does not keep."""
    session = dialer(name)
    folder, common, other = session.folder / "Suite", session.env.drive_c("ProgramData/Rufmon"), session.folder / "Root"
    folder.mkdir()
    for value, root in {None: common, "1": common, "0": folder, windows_path(other): other}.items():
        session.write("Suite/Rufmonpaths.ini", f"[Paths]\nProgramData={value}\n" if value else "")
        equal(install(session, folder), 0)
        made = [at for at in (common, folder, other) if (at / "data").is_dir() and (at / "log").is_dir()]
        equal(made, [root], value)
        shutil.rmtree(root / "data")
        shutil.rmtree(root / "log")


if __name__ == "__main__":
    run()
