#!/usr/bin/env python3
"""Ends: the dialer never outlives its conversation, and gives its line back."""
from conversations import CALL, SETTINGS, STARTED
from stories import CALL_UP, case, converse, dialer, expect_clean_end, run

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
            expect_clean_end(session)

    return play


for title, ending in ENDS.items():
    case(title)(end(ending, []))
    case(f"{title}-during-a-call")(end(ending, CALL))


@case("partner-that-refuses-reports")
def refused_reports(name):
    """A lost report is lost; the conversation goes on, and its end is still the program's end."""
    with dialer(name, CALL_UP) as session:
        session.do("answer refuse")
        session.start(SETTINGS)
        converse(session, [*STARTED, *CALL])
        session.do("terminate")
        expect_clean_end(session)


@case("partner-that-refuses-the-link")
def refused_link(name):
    """Without the item there are no commands, but the program stays until the partner goes."""
    with dialer(name) as session:
        session.do("refuse-advise")
        session.start(SETTINGS)
        converse(session, STARTED, commands=False)
        session.do("exit")
        expect_clean_end(session)


if __name__ == "__main__":
    run()
