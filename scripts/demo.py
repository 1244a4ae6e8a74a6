#!/usr/bin/env python3
"""A call from the main program to the far end and back, as it happens, with a picture of the window.

demo [--for-docs]     --for-docs also puts the picture where the README shows it
"""
import shutil
import sys
from pathlib import Path

from dialer_session import Session
from wine_env import WineEnv

ROOT = Path(__file__).resolve().parent.parent
BUILD = ROOT / "build/win64"
PICTURE = ROOT / "build/demo/window.png"
CAPTION = "Rufmon -  TAPI Wählhilfe Einstellungen"

EXPECTED = ["Init2LastOK|1", "line|ISDN-Line1", "cmd|quitt", "cmd|quitt", "anzlog|Anmeldung >> ISDN-Line1",
            "btnHangUp|1", "anzlog|Vorbereitung", "anzlog|Wählen", "anzlog|Klingeln", "btnHangUp|1",
            "anzlog|Verbunden", "cmd|autohide", "btnHangUp|0", "anzlog|Getrennt", "cmd|autohide",
            "anzlog|Call Dropped", "btnCall|1|Idle", "btnHangUp|0", "anzlog|Leerlauf", "cmd|autohide"]


def show(line):
    """Prints what is said, not what the script looks at."""
    if line.who != "screen":
        print(f"{line.milliseconds:7} ms  {line.who:16}  {line.text}", flush=True)


def run(env):
    """The demo's script; the reports that the main program got."""
    with Session(env, BUILD, ROOT / "build/demo/session", ROOT / "sim/scenarios/answered.txt", hear=show) as session:
        session.start("[TAPIDial]\nTAPILine=ISDN-Line1\n")
        session.wait("line|")
        session.send("settings")
        session.press(session.window(CAPTION), "Test")
        session.wait_for_control("Auflegen")
        session.send("cmd|call|0301234567")
        session.wait("anzlog|Verbunden")
        session.wait("cmd|autohide")
        session.picture(session.window(CAPTION)[0], PICTURE)
        session.wait("anzlog|Leerlauf")
        session.wait("cmd|autohide")
        session.do("terminate")
        session.wait("dialer ended, exit code 0", who="suite")
        return session.reports()


def main():
    if sys.argv[1:] not in ([], ["--for-docs"]):
        sys.exit(__doc__)
    sys.stdout.reconfigure(encoding="utf-8")
    env = WineEnv(BUILD / "wine")
    try:
        env.start()
        env.install_tapi(BUILD / "sim/tapi32.dll")
        reports = run(env)
    except AssertionError as fault:
        sys.exit(f"The demo failed: {fault}")
    finally:
        env.stop()
    if reports != EXPECTED:
        sys.exit("The demo failed: the conversation was not as expected, which is\n" + "\n".join(EXPECTED))
    if sys.argv[1:]:
        (ROOT / "docs/images").mkdir(exist_ok=True)
        shutil.copy(PICTURE, ROOT / "docs/images")
    print(f"\nThe call went through, the dialer ended by itself. Its window: {PICTURE.relative_to(ROOT)}")


if __name__ == "__main__":
    main()
