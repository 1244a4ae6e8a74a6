#!/usr/bin/env python3
"""Starts: what the main program hears of a start, and what the user is told when one is refused."""
from conversations import CALL, SETTINGS, STARTED
from stories import CALL_UP, calls, case, cases, converse, dialer, equal, expect_reports, found, run

NO_TAPI = "Fehlende oder falsche TAPI-Version!"
TITLE = "Rufmon - FonklavTAPI"
NO_DIRECT_CALL = "Ein Direktaufruf dieses Tools ist nicht vorgesehen!"
NO_AREA_CODES = ('Bitte wechseln Sie zur "Systemsteuerung" und vervollständigen Sie, unter "Telefon und Modem", die '
                 "Angaben zu Ihrem Standort!")

# name: what telephony has, the settings, the conversation.
STARTS = {
    "stored-line": ("", SETTINGS, STARTED),
    "stored-line-has-gone": ("", "[TAPIDial]\nTAPILine=Büro\n", [
        "Init2LastOK|0", "line|Gerät Büro nicht verfügbar!", "log|Gerät Büro nicht verfügbar!"]),
    "stored-name-is-the-beginning-of-a-line": ("", "[TAPIDial]\nTAPILine=ISDN\n", STARTED),
    "a-line-of-two-lines-and-a-backslash": (r'device name="Two\x0d\x0alines \x5cx0a"', "[TAPIDial]\nTAPILine=Two\n", [
        "Init2LastOK|1", "line|Two\r\nlines \x5cx0a"]),
    "telephony-up-to-1.4-only": ("tapi version=0x00010004\n" + CALL_UP, SETTINGS, [*STARTED, *CALL]),
}


@cases(STARTS)
def start(name, scenario, settings, story):
    """One row of the table."""
    with dialer(name, scenario) as session:
        session.start(settings)
        converse(session, story)
        equal(session.windows(), [])


@case("no-telephony-library")
def no_library(name):
    """A machine without the library is told from one without area codes."""
    with dialer(name, errors=True, tapi="") as session:
        session.start(SETTINGS)
        expect_reports(session, [f"line|{NO_TAPI}", f"log|{NO_TAPI}"])
        equal(found(session, "log/error.log", r"^(?!.* \+ 53 \+ File not found)(.*)"), [])
        equal(session.windows(), [])


@case("area-codes-missing")
def area_codes(name):
    """One message before the link is opened, none after it, and nothing for the main program."""
    with dialer(name, "refuse tapiGetLocationInfo 0x80000048") as session:
        session.start(SETTINGS)
        session.wait_for_control(NO_AREA_CODES)
        session.window(TITLE)
        session.click("OK")
        session.wait("link to the item established", who="suite")
        session.settle()
        equal(session.windows(), [])
        equal(session.reports(), [])
        equal(calls(session, "lineInitializeEx"), [])


@case("arguments-that-are-refused")
def arguments(name):
    """The user is told, and the program has gone before it touched link or telephony."""
    with dialer(name) as session:
        for argument in ("", "/SETT", "/sett ", "/run now", "call me"):
            session.start(SETTINGS, argument)
            session.wait_for_control(NO_DIRECT_CALL)
            session.window(TITLE)
            session.click("OK")
            session.wait("dialer ended", who="suite")
        equal(session.said("conversation open"), 0)
        equal(calls(session), [])


if __name__ == "__main__":
    run()
