#!/usr/bin/env python3
"""The link to a main program that is as slow or as wrong as DDE messages can be."""
from itertools import product

from conversations import ANSWERED, CALL, CAPTION, DIAL, IDLE, SETTINGS, STARTED, WHOLE_CALL
from dialer_session import wait_until
from stories import (CALL_UP, FAR_END_HANGS_UP, calls, case, cases, converse, dialer, equal, expect_clean_end, found, run,
                     started)

NO_SERVER = "Init DDE - ERROR=No foreign application responded to a DDE initiate"
WM_CLOSE = 0x10
# What the dialer may take for one message: 50 ms of its own, and as much again for a machine on which other programs
# run. Wine's clock goes in steps of 10 to 16 ms.
LONGEST_MS = 100

PINGED = ["! set debug|0", f"! ping {LONGEST_MS} cmd|quitt", "cmd|quitt", "! set "]
DIALED_ON = [*STARTED, *WHOLE_CALL]

# name: what the main program does from the start that it should not; the conversation, in which it goes on doing so;
# what else it sees; whether closing the window hides it or, when a report counts as failed, ends the program.
PEERS = {
    "busy-for-0.8-seconds": (["misbehave busy-at-link 800"], DIALED_ON, [], "hides"),
    "busy-for-2.5-seconds": (["misbehave busy-at-link 2500"], DIALED_ON, [], "hides"),
    "busy-for-6-seconds": (["misbehave busy-at-link 6000"], DIALED_ON, [], "hides"),
    "the-item-is-busy-twice": (["misbehave busy-at-advise 2"], DIALED_ON, [], "hides"),
    "the-item-is-answered-late": (["misbehave advise-delay 1500"], DIALED_ON, [], "hides"),
    "the-item-is-answered-twice": (["misbehave advise-answers 2"], DIALED_ON, [], "hides"),
    "the-item-is-never-answered": (["misbehave advise-answers 0"], DIALED_ON, [], "hides"),
    "reports-are-refused": (["misbehave execute-status 0"], DIALED_ON, [], "ends"),
    "reports-meet-a-busy-program": (["misbehave execute-status 0x4000"], DIALED_ON, [], "hides"),
    "reports-are-answered-late": (["misbehave execute-delay 100"], DIALED_ON, [], "hides"),
    "reports-are-answered-twice": (["misbehave execute-answers 2"], DIALED_ON, [], "hides"),
    # The silence itself is what counts: 5 seconds of it, and what comes later is still tried.
    "reports-are-never-answered": (
        ["misbehave execute-answers 0"], [*STARTED, "! sleep 5500", *WHOLE_CALL], [], "ends"),
    "answers-what-was-never-sent": ([], [*STARTED, *CALL, "! misbehave stray-answer"], [], "hides"),
    "a-value-of-another-item": ([], [*STARTED, "! misbehave value-of-another-item cmd|frob"], [], "hides"),
    "a-value-without-end": ([], [*STARTED, "! misbehave value-without-end cmd|frob", "cmd|quitt"], [], "hides"),
    "a-value-that-is-empty": ([], [*STARTED, "! misbehave value-empty"], [], "hides"),
    "a-value-without-memory": ([], [*STARTED, "! misbehave value-without-memory"], [], "hides"),
    "a-value-that-is-no-text": ([], [*STARTED, "! misbehave value-no-text cmd|frob"], [], "hides"),
    "a-value-that-is-no-text-and-asks": (
        [], [*STARTED, "! misbehave value-no-text-asking cmd|frob"], ["the value was refused"], "hides"),
    "a-value-that-asks": (
        [], [*STARTED, "! misbehave value-asking cmd|frob", "cmd|quitt"], ["the value was taken"], "hides"),
    "a-value-of-1-mb": ([], [*STARTED, "! misbehave value-of-size 1000000", *PINGED], [], "hides"),
    "8000-values-in-a-row": ([], [*STARTED, "! misbehave values 8000", *PINGED], [], "hides"),
    "the-same-value-twice": ([], [*STARTED, "! set cmd|frob", "cmd|quitt", "! set cmd|frob", "! set "], [], "hides"),
    "two-servers": (["misbehave second-answer 1"], DIALED_ON, ["the other server is told the end"], "hides"),
    "a-stranger-speaks": ([], [*STARTED, *CALL, "! misbehave stranger"], [], "hides"),
}


@cases(PEERS)
def peer(name, misbehaviour, story, seen, closing):
    """Whatever it does, the dialer says what it should and no more, and ends with the link or, once that counts as
    lost, with its window."""
    with dialer(name, FAR_END_HANGS_UP if IDLE[-2] in story else CALL_UP) as session:
        for what in misbehaviour:
            session.do(what)
        session.start(SETTINGS)
        session.wait("link to the item established", seconds=15, who="suite")
        converse(session, story)
        for what in seen:
            equal(session.said(what), 1, what)
        converse(session, [*session.expected, "> settings", "cmd|quitt"])
        session.window(CAPTION)
        session.do(f"tell {WM_CLOSE} 0")
        if closing == "hides":
            wait_until("hidden", lambda: session.windows() == [])
            session.settle()
            session.do("terminate")
        expect_clean_end(session)


LOSSES = {
    "vanishes": lambda session: session.do("misbehave vanish"),
    "closes": lambda session: session.do("terminate"),
    "is-killed": lambda session: session.suite.kill(),
    "exits": lambda session: session.do("exit"),
}
# When it is lost: what the line does, and the conversation.
MOMENTS = {
    "before-a-call": ("", []),
    "when-the-call-is-dialing": ("call reply after=20", [*DIAL, *ANSWERED[:1]]),
    "when-the-call-is-ringing": ("call reply after=20\ncall state dialing after=40", [*DIAL, *ANSWERED[:2]]),
    "when-the-call-is-connected": (CALL_UP, CALL),
    "when-the-call-is-over": (FAR_END_HANGS_UP, WHOLE_CALL),
}


@cases({f"partner-{way}-{moment}": (lose, *row) for (way, lose), (moment, row)
        in product(LOSSES.items(), MOMENTS.items())})
def loss(name, lose, scenario, story):
    """The partner goes; the dialer follows it, and leaves nothing open."""
    with started(name, scenario, story) as session:
        lose(session)
        expect_clean_end(session)


@case("the-item-is-refused")
def refused(name):
    """There are no commands, but reports, and the partner's end is the dialer's."""
    with dialer(name) as session:
        session.do("misbehave advise-status 0")
        session.start(SETTINGS)
        session.expected = STARTED
        session.wait_for_reports(len(STARTED))
        session.do("terminate")
        expect_clean_end(session)


@case("the-end-comes-before-the-item-is-answered")
def ended_at_once(name):
    """The dialer goes without having called anybody."""
    with dialer(name) as session:
        session.do("misbehave end-at-advise 1")
        session.start(SETTINGS)
        session.wait("conversation open", who="suite")
        expect_clean_end(session)
        equal(calls(session, "lineOpen"), [])


@case("a-window-that-is-slow-delays-nobody")
def bystander(name):
    """Another program's window is still to deal with the question when the answer to the advise comes."""
    with dialer(name, FAR_END_HANGS_UP) as session:
        session.do("misbehave bystander 4000")
        session.start(SETTINGS)
        opened = session.wait("conversation open", who="suite").milliseconds
        converse(session, DIALED_ON)
        took = session.wait("anzlog|Leerlauf").milliseconds - opened
        assert took < 4000, f"the call was over only {took} ms after the link"


@case("an-answer-after-ten-seconds-is-too-late")
def too_late(name):
    """The settings window does not wait; the late answer is told the end, and nobody hears of the link any more."""
    with dialer(name) as session:
        session.write("Rufmonspec.ini", "[Debug]\nLogTAPI=1\n")
        session.do("misbehave busy-at-link 12000")
        session.start(SETTINGS, "/sett")
        session.wait("is asked", who="suite")
        session.wait("conversation open", seconds=15, who="suite")
        session.wait("conversation closed", who="suite")
        equal(found(session, "log/debug.log", "FVT (.*DDE.*)"),
              ["Init DDE", NO_SERVER])
        equal(session.reports(), [])
        session.window(CAPTION)


@case("a-close-ends-the-question")
def closed(name):
    """The user need not wait until the main program answers."""
    with dialer(name) as session:
        session.do("misbehave busy-at-link 8000")
        session.start(SETTINGS, "/sett")
        session.wait("is asked", who="suite")
        # The stand-in, which is busy, cannot tell when the window is there and has the keyboard: whoever sits before it
        # presses the key again.
        wait_until("the dialer has ended", lambda: session.xdotool("key", "Escape") or not session.dialers(), 6)


if __name__ == "__main__":
    run()
