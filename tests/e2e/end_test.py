#!/usr/bin/env python3
"""Ends: the dialer never outlives its conversation, and gives its line back."""
from stories import ANSWERED, CALL_UP, DIALED, SETTINGS, STARTED, calls, case, converse, dialer, equal, run

ENDS = {
    "conversation-closed": lambda session: session.do("terminate"),
    "main-program-exits": lambda session: session.do("exit"),
    "main-program-killed": lambda session: session.suite.kill(),
}


def end(how, story):
    """One way to end, after a conversation, as a case."""

    def play(name):
        with dialer(name, CALL_UP) as session:
            session.start(SETTINGS)
            converse(session, [*STARTED, *story])
            how(session)
            session.wait_for_end(seconds=2)
            equal([line.split("(")[0] for line in calls(session, "lineClose", "lineShutdown")][-2:],
                  (["call lineClose"] if story else ["call lineShutdown"]) + ["call lineShutdown"])
            equal(session.read("log/error.log"), [])

    return play


for title, ending in ENDS.items():
    case(title)(end(ending, []))
    case(f"{title}-during-a-call")(end(ending, ["> cmd|call|0301234567", *DIALED, *ANSWERED]))


@case("partner-that-refuses-reports")
def refused_reports(name):
    """A lost report is lost; the conversation goes on, and its end is still the program's end."""
    with dialer(name, CALL_UP) as session:
        session.do("answer refuse")
        session.start(SETTINGS)
        converse(session, [*STARTED, "> cmd|call|0301234567", *DIALED, *ANSWERED])
        session.do("terminate")
        session.wait_for_end(seconds=2)


@case("partner-that-refuses-the-link")
def refused_link(name):
    """Without the item there are no commands, but the program stays until the partner goes."""
    with dialer(name) as session:
        session.do("refuse-advise")
        session.start(SETTINGS)
        converse(session, STARTED)
        session.do("exit")
        session.wait_for_end(seconds=2)


if __name__ == "__main__":
    run()
