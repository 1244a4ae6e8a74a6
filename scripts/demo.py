#!/usr/bin/env python3
"""A call as it happens, with pictures of the window: collapsed, with the report on a line, during the call.

demo                  in German, at 100 %
demo --screens        for each language and scale of the pages
"""
import shutil
import sys

from conversations import ANSWERED, DIALED, FAR_END_HUNG_UP, IDLE, SETTINGS, STARTED
from dialer_session import Session, wait_until
from wine_env import ROOT, WineEnv

FOLDER = ROOT / "build/demo"
EXPECTED = [*STARTED, *DIALED, *ANSWERED, *FAR_END_HUNG_UP, *IDLE]


def show(line):
    """Prints what is said, not what the script looks at."""
    if line.who != "screen":
        print(line, flush=True)


def take_picture(session, name):
    path = FOLDER / f"{name}.png"
    session.picture(path, wait_until("the window", session.windows)[0])
    print(path.relative_to(ROOT), flush=True)


def dial(env, language, code, percent):
    """What is clicked goes by its place in tab order, whatever its caption in that language."""
    scenario = (ROOT / "sim/scenarios/two-lines.txt").read_text()
    with Session(env, FOLDER / "session", scenario, hear=show) as session:
        session.write("data/Rufmon.ini", f"[General]\nLanguage={code}\n")
        shutil.copy(ROOT / f"lang/language_{code}.ini", session.folder / "base")
        session.start(SETTINGS, "/sett")
        session.wait("line|")
        take_picture(session, f"collapsed-{language}-{percent}")
        session.click("Button 1")
        session.click("entry 0")
        wait_until("the report on the line", lambda: any("TAPI LINE NAME: " in item.text for item in session.windows()))
        take_picture(session, f"device-info-{language}-{percent}")
        session.click("Button 2")
        session.send("cmd|call|0301234567")
        session.wait("cmd|autohide")
        take_picture(session, f"call-{language}-{percent}")
        session.wait("btnCall|1|Idle")
        session.wait("cmd|autohide")
        session.end()
    assert code != 49 or session.reports() == EXPECTED, "\n".join(["not the conversation that was expected:", *EXPECTED])


def screens(env):
    """All pictures; the scale is the system's, so Wine starts anew for each."""
    for percent in (200, 100):
        env.set_registry(r"HKCU\Control Panel\Desktop", "LogPixels", "REG_DWORD", str(96 * percent // 100))
        env.start()
        for language, code in {"de": 49, "en": 44}.items():
            dial(env, language, code, percent)


def main():
    if sys.argv[1:] not in ([], ["--screens"]):
        sys.exit(__doc__)
    sys.stdout.reconfigure(encoding="utf-8")
    try:
        with WineEnv() as env:
            if sys.argv[1:]:
                screens(env)
            else:
                dial(env, "de", 49, 100)
    except AssertionError as fault:
        sys.exit(f"The demo failed: {fault}")
    print("\nThe call went through, the dialer ended by itself.")


if __name__ == "__main__":
    main()
