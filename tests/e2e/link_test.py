#!/usr/bin/env python3
"""The link to a main program that speaks the DDE messages itself, and is as slow or as wrong as messages can be."""
import time

from stories import (ANSWERED, CALL_UP, DIALED, FAR_END_HUNG_UP, IDLE, SETTINGS, STARTED, calls, case, converse, dialer,
                     equal, expect_reports, run)

NO_SERVER = "Init DDE - ERROR=No foreign application responded to a DDE initiate"
WHOLE_CALL = ["> cmd|call|0301234567", *DIALED, *ANSWERED, *FAR_END_HUNG_UP, *IDLE]
HANGS_UP = CALL_UP + "call state disconnected after=200"

# name: what the main program does that it should not.
SLOW_LINKS = {
    "a-main-program-on-messages": [],
    "busy-for-0.8-seconds": ["busy-at-link 800"],
    "busy-for-2.5-seconds": ["busy-at-link 2500"],
    "busy-for-6-seconds": ["busy-at-link 6000"],
    "the-item-is-busy-twice": ["busy-at-advise 2"],
}


def slow_link(misbehaviour):
    """However long the answer takes, the start's reports, a call and the end come as if it had come at once."""

    def play(name):
        with dialer(name, HANGS_UP, messages=True) as session:
            for what in misbehaviour:
                session.do(f"misbehave {what}")
            session.start(SETTINGS)
            session.wait("link to the item established", seconds=15, who="suite")
            converse(session, [*STARTED, *WHOLE_CALL])
            session.do("terminate")
            session.wait_for_end(seconds=2)
            equal([line.split("(")[0] for line in calls(session, "lineClose", "lineShutdown")][-2:],
                  ["call lineClose", "call lineShutdown"])
            equal(session.read("log/error.log"), [])

    return play


for title, what in SLOW_LINKS.items():
    case(title)(slow_link(what))


@case("a-window-that-is-slow-delays-nobody")
def bystander(name):
    """Another program's window is still to deal with the question when the answer to the advise comes."""
    with dialer(name, HANGS_UP, messages=True) as session:
        session.do("misbehave bystander 4000")
        session.do("sleep 300")
        session.start(SETTINGS)
        opened = session.wait("conversation open", who="suite").milliseconds
        converse(session, [*STARTED, *WHOLE_CALL])
        took = session.wait("anzlog|Leerlauf").milliseconds - opened
        assert took < 4000, f"the call was over only {took} ms after the link"
        equal(session.read("log/error.log"), [])


@case("an-answer-after-ten-seconds-is-too-late")
def too_late(name):
    """The settings window does not wait; the late answer is told the end, and nobody hears of the link any more."""
    with dialer(name, messages=True) as session:
        session.write("Rufmonspec.ini", "[Debug]\nLogTAPI=1\n")
        session.do("misbehave busy-at-link 12000")
        session.start(SETTINGS, "/sett")
        session.wait("is asked", who="suite")
        session.wait("conversation open", seconds=15, who="suite")
        session.wait("conversation closed", who="suite")
        equal([line.split("FVT ")[1] for line in session.read("log/debug.log") if "DDE" in line],
              ["Init DDE", NO_SERVER])
        equal(session.reports(), [])
        session.window("Rufmon -  TAPI Wählhilfe Einstellungen")
        equal(session.read("log/error.log"), [])


@case("a-close-ends-the-question")
def closed(name):
    """The user need not wait until the main program answers."""
    with dialer(name, messages=True) as session:
        session.do("misbehave busy-at-link 8000")
        session.start(SETTINGS, "/sett")
        session.wait("is asked", who="suite")
        asked = time.monotonic()
        while session.dialers():
            assert time.monotonic() < asked + 6, "the dialer waits for the main program"
            session.xdotool("key", "Escape")
            time.sleep(0.2)
        equal(session.read("log/error.log"), [])


@case("flags-of-every-kind")
def flags(name):
    """All that the platform reads as a number or a word is a flag, and nothing else."""
    with dialer(name, messages=True) as session:
        session.start(SETTINGS)
        good = ["1e3", " 2 ", "0E5", "-1", "1d-2", "True", "FALSE", "1,5"]
        bad = ["1e", "e1", "1 e2", " True", "0x1", ""]
        converse(session, [*STARTED, *(part for flag in good + bad for part in (f"> debug|{flag}", "cmd|quitt"))])
        equal([line.split("Params")[1] for line in session.read("log/error.log")],
              [f"(S:debug|{flag})" for flag in bad])


if __name__ == "__main__":
    run()
