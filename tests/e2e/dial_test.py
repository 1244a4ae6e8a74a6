#!/usr/bin/env python3
"""Calls: the whole conversation of each, from the start of the dialer to the last report."""
from conversations import CALL, DIAL, FAR_END_HUNG_UP, HANG_UP, IDLE, WHOLE_CALL
from stories import CALL_UP, FAR_END_HANGS_UP, case, cases, equal, found, run, started

# name: what the line does, and the conversation after the start.
CONVERSATIONS = {
    "far-end-hangs-up": (CALL_UP + "call state disconnected detail=1 after=300", WHOLE_CALL),
    "main-program-hangs-up": (CALL_UP, [*CALL, *HANG_UP, "btnCall|1|cmdHangUp_Click", "anzlog|Call Dropped",
                                        *IDLE]),
    "the-next-call-opens-the-line-again": (FAR_END_HANGS_UP, [*WHOLE_CALL, *WHOLE_CALL]),
    "busy": ("call reply after=20\ncall state dialing after=40\ncall state busy after=60\n"
             "call state disconnected detail=0x20 after=200",
             [*DIAL, "anzlog|Wählen", "anzlog|Klingeln", *FAR_END_HUNG_UP, *IDLE]),
    "line-cannot-be-opened": ("refuse lineOpen 0x8000000F", [
        *DIAL[:4], "log|Open line ERROR -2147483633 In Use", "anz|OpenLine Error >> Log",
        "btnCall|1|cmdWahl_Click 1"]),
    "call-refused-at-once": ("refuse lineMakeCall 0x80000010", [
        *DIAL, "log|ERROR -2147483632 Invalid Address", "anz|MakeCallAsynch Error >> Log",
        "btnCall|1|cmdWahl_Click 2"]),
    "call-refused-by-reply": ("call reply result=0x8000004B after=20", [
        *DIAL, "log|Call Error: Resource Unavailable", "anz|Call Error >> Log"]),
}


@cases(CONVERSATIONS)
def conversation(name, scenario, story):
    """One row of the table."""
    with started(name, scenario, story):
        pass  # the conversation is all


# command, the address that reaches lineTranslateAddress (None: it is not asked), the address that is dialed.
NUMBERS = [
    ("0301234567", '"90301234567"', '"90301234567"'),
    ("Müller €", r'"9M\xfcller \x80"', r'"9M\xfcller \x80"'),
    ("+49 30 7654321", '"+49(30)7654321"', '"97654321"'),
    ("", None, "null"),
]


@case("numbers-as-they-reach-the-line")
def numbers(name):
    """The strings at telephony's door, for each number that the main program sends."""
    office = "location country=49 city=30 local=9 long=9 current=1\ntapi blanks=0\n"
    with started(name, office + "call reply after=5\ncall state disconnected after=10") as session:
        for number, _, _ in NUMBERS:
            session.send(f"cmd|call|{number}")
            session.wait("anzlog|Leerlauf")
        equal(addresses(session, "lineTranslateAddress"), [translated for _, translated, _ in NUMBERS if translated])
        equal(addresses(session, "lineMakeCall"), [dialed for _, _, dialed in NUMBERS])


def addresses(session, function):
    """The address arguments of the recorded calls."""
    return found(session, "sim.log", rf'^call {function}\(.*address=("(?:[^"\\]|\\.)*"|null)')


@case("a-number-of-64-kb")
def long_number(name):
    """Whatever telephony makes of it, the dialer takes the next command at once; its box shows the beginning."""
    with started(name) as session:
        session.send("cmd|call|" + "7" * 65500)
        session.wait("anzlog|Vorbereitung", seconds=2)
        session.settle(seconds=1)
        equal([len(text) for text in addresses(session, "lineTranslateAddress")], [65500 + 2])


if __name__ == "__main__":
    run()
