#!/usr/bin/env python3
"""A call from the main program to the far end and back, as it happens, with a picture of the window.

demo                  dials a call
demo --screens        takes pictures of the window collapsed, with its panels, in German and English, at 100 and 200 %
"""
import shutil
import sys
from pathlib import Path

from conversations import ANSWERED, CAPTION, DIALED, FAR_END_HUNG_UP, IDLE, SETTINGS, STARTED
from dialer_session import Session, wait_until
from wine_env import WineEnv

ROOT = Path(__file__).resolve().parent.parent
BUILD = ROOT / "build/win64"
PICTURE = ROOT / "build/demo/window.png"
EXPECTED = [*STARTED, "cmd|quitt", *DIALED, *ANSWERED, *FAR_END_HUNG_UP, *IDLE]


def show(line):
    """Prints what is said, not what the script looks at."""
    if line.who != "screen":
        print(line, flush=True)


def run(env):
    """The demo's script; the reports that the main program got."""
    with Session(env, BUILD, ROOT / "build/demo/session", ROOT / "sim/scenarios/answered.txt", hear=show) as session:
        session.start(SETTINGS)
        session.wait("line|")
        session.send("settings")
        session.click("Test")
        session.wait_for_control("Auflegen")
        session.send("cmd|call|0301234567")
        session.wait("anzlog|Verbunden")
        session.wait("cmd|autohide")
        session.picture(PICTURE, session.window(CAPTION)[0])
        session.wait("anzlog|Leerlauf")
        session.wait("cmd|autohide")
        session.do("terminate")
        session.wait("dialer ended, exit code 0", who="suite")
        return session.reports()


def texts_of(code):
    """The texts of a language file by key, as the window shows them: without quotes and access-key marks."""
    lines = (ROOT / f"lang/language_{code}.ini").read_text(encoding="cp1252").splitlines()
    return {key: text.strip('"').replace("&", "") for key, _, text in (line.partition("=") for line in lines)}


def take_screens(env, name, code):
    """The window's pictures in one language."""
    texts = texts_of(code)
    caption = f"Rufmon -  {texts['Settings_Label_HeadTAPI']} {texts['Display_Menu_Settings']}"
    with Session(env, BUILD, ROOT / "build/demo/session", ROOT / "sim/scenarios/two-lines.txt") as session:
        def picture(what):
            path = ROOT / f"build/demo/{what}-{name}.png"
            session.picture(path, session.window(caption)[0])
            print(path.relative_to(ROOT), flush=True)

        session.write("data/Rufmon.ini", f"[General]\nLanguage={code}\n")
        shutil.copy(ROOT / f"lang/language_{code}.ini", session.folder / "base")
        session.start(SETTINGS, "/sett")
        session.wait("line|")
        picture("collapsed")
        session.click(texts["TAPIConfig_Button_DeviceInfo"])
        session.wait_for_control(texts["TAPIConfig_Frame_DeviceInfo"])
        session.click("entry 0")
        wait_until("the report on the line", lambda: any("TAPI LINE NAME: " in item.text for item in session.windows()))
        picture("device-info")
        session.click(texts["TAPIConfig_Button_Test"])
        session.wait_for_control(texts["TAPI_Button_HangUp"])
        session.send("cmd|call|0301234567")
        session.wait(f"anzlog|{texts['TAPIConfig_String_Connected']}")
        session.wait("cmd|autohide")
        picture("call")
        session.do("terminate")
        session.wait("dialer ended, exit code 0", who="suite")


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
    env = WineEnv(BUILD / "wine")
    try:
        env.start()
        env.install_tapi(BUILD / "sim/tapi32.dll")
        if sys.argv[1:] == ["--screens"]:
            return screens(env)
        reports = run(env)
    except AssertionError as fault:
        sys.exit(f"The demo failed: {fault}")
    finally:
        env.stop()
    if reports != EXPECTED:
        sys.exit("The demo failed: the conversation was not as expected, which is\n" + "\n".join(EXPECTED))
    print(f"\nThe call went through, the dialer ended by itself. Its window: {PICTURE.relative_to(ROOT)}")


if __name__ == "__main__":
    main()
