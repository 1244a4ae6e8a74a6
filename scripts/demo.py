#!/usr/bin/env python3
"""A call from the main program to the far end and back, as it happens, with a picture of the window.

demo                  dials a call
demo --screens        takes pictures of the window collapsed, with its panels, in German and English, at 100 and 200 %
"""
import shutil
import sys

from conversations import ANSWERED, DIALED, FAR_END_HUNG_UP, IDLE, SETTINGS, STARTED, open_panel
from dialer_session import Session, wait_until
from wine_env import ROOT, WineEnv

FOLDER = ROOT / "build/demo"
EXPECTED = [*STARTED, "cmd|quitt", *DIALED, *ANSWERED, *FAR_END_HUNG_UP, *IDLE]


def session_of(env, scenario, **more):
    return Session(env, FOLDER / "session", (ROOT / f"sim/scenarios/{scenario}.txt").read_text(), **more)


def dial(session):
    session.send("cmd|call|0301234567")
    session.wait("cmd|autohide")  # it is connected


def take_picture(session, name):
    path = FOLDER / f"{name}.png"
    session.picture(path, wait_until("the window", session.windows)[0])
    print(path.relative_to(ROOT), flush=True)


def run(env):
    """The demo's script."""
    with session_of(env, "answered", hear=lambda line: line.who == "screen" or print(line, flush=True)) as session:
        session.start(SETTINGS)
        session.wait("line|")
        session.send("settings")
        open_panel(session)
        dial(session)
        take_picture(session, "window")
        session.wait("anzlog|Leerlauf")
        session.wait("cmd|autohide")
        session.end()
    assert session.reports() == EXPECTED, "\n".join(["the conversation was not as expected, which is", *EXPECTED])
    print("\nThe call went through, the dialer ended by itself.")


def take_screens(env, name, code):
    """The window's pictures in one language. What is clicked goes by its place in tab order, whatever its caption."""
    with session_of(env, "two-lines") as session:
        session.write("data/Rufmon.ini", f"[General]\nLanguage={code}\n")
        shutil.copy(ROOT / f"lang/language_{code}.ini", session.folder / "base")
        session.start(SETTINGS, "/sett")
        session.wait("line|")
        take_picture(session, f"collapsed-{name}")
        session.click("Button 1")
        session.click("entry 0")
        wait_until("the report on the line", lambda: any("TAPI LINE NAME: " in item.text for item in session.windows()))
        take_picture(session, f"device-info-{name}")
        session.click("Button 2")
        dial(session)
        take_picture(session, f"call-{name}")
        session.end()


def screens(env):
    """All pictures; the scale is the system's, so Wine starts anew for each."""
    for percent in (100, 200):
        env.set_registry(r"HKCU\Control Panel\Desktop", "LogPixels", "REG_DWORD", str(96 * percent // 100))
        env.start()
        for language, code in {"de": 49, "en": 44}.items():
            take_screens(env, f"{language}-{percent}", code)
    env.set_registry(r"HKCU\Control Panel\Desktop", "LogPixels", "REG_DWORD", "96")


def main():
    if sys.argv[1:] not in ([], ["--screens"]):
        sys.exit(__doc__)
    sys.stdout.reconfigure(encoding="utf-8")
    try:
        with WineEnv() as env:
            (screens if sys.argv[1:] else run)(env)
    except AssertionError as fault:
        sys.exit(f"The demo failed: {fault}")


if __name__ == "__main__":
    main()
