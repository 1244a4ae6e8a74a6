"""What the end-to-end scripts share: a list of named cases, a dialer at work, and comparing what it said."""
import os
import sys
import time
from pathlib import Path

from dialer_session import Session
from wine_env import WineEnv

CASES = {}
SETTINGS = "[TAPIDial]\nTAPILine=ISDN-Line1\n"
TELEPHONY = "device name=ISDN-Line1 media=4\nlocation country=49 city=30\n"

# What the dialer reports, by the stage of a call; with the German texts that it has without any language file.
STARTED = ["Init2LastOK|1", "line|ISDN-Line1"]
DIALED = ["cmd|quitt", "anzlog|Anmeldung >> ISDN-Line1", "btnHangUp|1", "anzlog|Vorbereitung"]
ANSWERED = ["anzlog|Wählen", "anzlog|Klingeln", "btnHangUp|1", "anzlog|Verbunden", "cmd|autohide"]
FAR_END_HUNG_UP = ["btnHangUp|0", "anzlog|Getrennt", "cmd|autohide", "anzlog|Call Dropped"]
IDLE = ["btnCall|1|Idle", "btnHangUp|0", "anzlog|Leerlauf", "cmd|autohide"]
HANG_UP = ["> cmd|hangup", "cmd|quitt", "btnHangUp|0|cmdHangUp_Click", "anzlog|Auflegen"]
CALL_UP = "call reply after=20\ncall state dialing after=40\ncall state connected after=60\n"


def case(name):
    """Names a function as a case that CTest runs on its own."""

    def remember(function):
        assert name not in CASES, name
        CASES[name] = function
        return function

    return remember


def dialer(name, scenario="", **more):
    """A session with a line simulator that plays `scenario`, the text of a scenario file. Its folder is named after
    the case and stays for a look after a failure."""
    build = Path(os.environ["FONKLAV_BUILD"])
    env = WineEnv(build / "wine")
    env.install_tapi(build / "sim/tapi32.dll")
    folder = build / "e2e" / name
    script = build / "e2e" / f"{name}.scenario.txt"
    script.parent.mkdir(parents=True, exist_ok=True)
    script.write_text(TELEPHONY + scenario if scenario is not None else "", encoding="cp1252")
    return Session(env, build, folder, script, **more)


def converse(session, story):
    """Plays a whole conversation: lines that begin with "> " are said by the main program as soon as all reports
    before them have arrived, the others are the reports, exactly these and in this order."""
    expected = []
    for line in story:
        if line.startswith("> "):
            wait_for_reports(session, len(expected))
            session.send(line[2:])
        else:
            expected.append(line)
    expect_reports(session, expected)


def expect_reports(session, expected, seconds=10):
    """Waits for as many reports as are expected and for a little silence after them, then compares all of them."""
    wait_for_reports(session, len(expected), seconds)
    time.sleep(0.3)
    equal(session.reports(), expected, session)


def wait_for_reports(session, count, seconds=10):
    """Waits until that many reports have come, or the time is over: what is missing shows in the comparison."""
    end = time.monotonic() + seconds
    while len(session.reports()) < count and time.monotonic() < end:
        time.sleep(0.02)


def calls(session, *functions):
    """The calls of these telephony functions that the simulator has recorded, as it writes them."""
    return [line for line in session.read("sim.log") if line.startswith(tuple(f"call {name}(" for name in functions))]


def equal(actual, expected, context=""):
    """Compares two values, and lists line by line when they are lists."""
    if actual == expected:
        return
    shown = "\n".join(f"{'  ' if a == e else '! '}{a!r:50}  {e!r}" for a, e in pad(actual, expected)) \
        if isinstance(expected, list) else f"{actual!r}\n{expected!r}"
    raise AssertionError(f"what was (left) is not what was expected (right):\n{shown}\n\n{context}")


def pad(left, right):
    """Both lists side by side, the shorter filled up."""
    size = max(len(left), len(right))
    return zip(left + [None] * (size - len(left)), right + [None] * (size - len(right)))


def run():
    """--list prints the names of the cases; a name runs one of them, none runs all."""
    if sys.argv[1:] == ["--list"]:
        print("\n".join(CASES))
        return
    for name in sys.argv[1:] or CASES:
        CASES[name](name)
        print(f"{name}: passed", flush=True)
